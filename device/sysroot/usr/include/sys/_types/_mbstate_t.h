// The type that std::char_traits names. No wide-character function is called.
#pragma once

typedef union {
    char __mbstate8[128];
    long long _mbstateL;
} mbstate_t;
