// UIKit, as far as the library calls it.
#pragma once

#import <UIKit/UIAlertController.h>
#import <UIKit/UIApplication.h>
#import <UIKit/UIBezierPath.h>
#import <UIKit/UIColor.h>
#import <UIKit/UIDevice.h>
#import <UIKit/UIFeedback.h>
#import <UIKit/UIFont.h>
#import <UIKit/UIGestureRecognizer.h>
#import <UIKit/UIGraphics.h>
#import <UIKit/UIImage.h>
#import <UIKit/UIImageView.h>
#import <UIKit/UILabel.h>
#import <UIKit/UIView.h>
#import <UIKit/UIViewController.h>
#import <UIKit/_UIImageContent.h>
