// Points in time, calendars and their texts.
#pragma once

#import <Foundation/NSObject.h>

@interface NSDate : NSObject <NSCopying>
+ (instancetype)date;
+ (instancetype)dateWithTimeIntervalSinceReferenceDate:(NSTimeInterval)seconds;
- (NSTimeInterval)timeIntervalSinceReferenceDate;
@end

typedef NS_OPTIONS(NSUInteger, NSCalendarUnit) {
    NSCalendarUnitYear = 1UL << 2,
    NSCalendarUnitMonth = 1UL << 3,
    NSCalendarUnitDay = 1UL << 4,
    NSCalendarUnitHour = 1UL << 5,
    NSCalendarUnitMinute = 1UL << 6,
    NSCalendarUnitSecond = 1UL << 7,
    NSCalendarUnitWeekday = 1UL << 9
};

@interface NSDateComponents : NSObject <NSCopying>
- (NSInteger)day;
- (NSInteger)weekday;
@end

@interface NSCalendar : NSObject <NSCopying>
- (id)initWithCalendarIdentifier:(NSString*)identifier;
- (NSDateComponents*)components:(NSCalendarUnit)units fromDate:(NSDate*)date;
@end

@interface NSFormatter : NSObject <NSCopying>
@end

@interface NSDateFormatter : NSFormatter
- (void)setDateFormat:(NSString*)format;
- (NSString*)stringFromDate:(NSDate*)date;
@end
