// The phone around the library, as tests set it up and look at it: the log, the system's version,
// notifications, the main queue and its clock, and the folder that the phone's paths lead into.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velmoranth::standins {

// What was written with NSLog since the last clearLog, a line each.
[[nodiscard]] std::vector<std::string> logLines();
void clearLog();

// The running system's version and its kCFCoreFoundationVersionNumber; 13.3 until set. The number
// is read by the library as it is loaded.
void setSystemVersion(int major, int minor, int patch, double coreFoundationVersionNumber);

// The user's locale, "he_IL@calendar=hebrew"; this machine's until set.
void setLocale(const std::string& identifier);

// What uname() gives as the machine's name; "iPhone12,3" until set.
void setMachine(const std::string& name);

// What NSHomeDirectory() gives; "/var/mobile" until set.
void setHomeDirectory(const std::string& path);

// Posts through the Darwin notification centre. Its observers are called from the main queue.
void postDarwinNotification(const std::string& name);

// Runs what is due on the main queue, what gets due by that included.
void runMainQueue();
// Moves the main queue's clock on and runs what gets due on the way, each at its own time.
void advanceClock(double seconds);
// The main queue's clock.
[[nodiscard]] double clockSeconds();
// How many blocks wait on the main queue.
[[nodiscard]] std::size_t pendingOnMainQueue();

// The folder that the phone's paths ("/Library/…", "/User/…", "/var/mobile/…" and so on) lead into,
// for every call of this process that takes a path; "" for none, as at first. "/User" is
// "/var/mobile" there and "/private/var" is "/var". Absolute links inside the folder are followed
// to this machine's own paths.
void setPhoneRoot(const std::string& folder);
// Where a path of the phone lies on this machine.
[[nodiscard]] std::string placeOf(const std::string& path);

}  // namespace velmoranth::standins
