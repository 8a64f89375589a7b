// The members of std::string, and the functions of the C++ library that take or give one, with the
// layout that strings have on the phone's arm64. Compiled against libc++'s headers.
#include <charconv>
#include <string>

template class std::basic_string<char>;

namespace {

template <class Number>
std::string textOf(Number number) {
    char digits[24];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    return {std::begin(digits), end};
}

}  // namespace

_LIBCPP_BEGIN_NAMESPACE_STD

string to_string(int number) {
    return textOf(number);
}

string to_string(unsigned number) {
    return textOf(number);
}

string to_string(long number) {
    return textOf(number);
}

string to_string(unsigned long number) {
    return textOf(number);
}

string to_string(long long number) {
    return textOf(number);
}

string to_string(unsigned long long number) {
    return textOf(number);
}

_LIBCPP_END_NAMESPACE_STD
