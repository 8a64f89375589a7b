// For messages that the platform does not document: a release of it may lack any of them. What
// lacks one gets no message, which is as a message to nil: it gives nil, zero or nothing.
#pragma once

#import <Foundation/Foundation.h>

namespace velmoranth::device {

// The receiver, or nil for one that does not understand the message.
template <class Receiver>
[[nodiscard]] Receiver* ifUnderstood(Receiver* receiver, SEL message) {
    return [receiver respondsToSelector:message] ? receiver : nil;
}

[[nodiscard]] inline Class ifUnderstood(Class receiver, SEL message) {
    return [receiver respondsToSelector:message] ? receiver : Nil;
}

// The class, or nil for one whose objects do not understand the message: one that sets them up.
[[nodiscard]] inline Class ifMade(Class objects, SEL initializer) {
    return [objects instancesRespondToSelector:initializer] ? objects : Nil;
}

}  // namespace velmoranth::device
