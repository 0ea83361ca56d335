#include <HostConfigValues.h>

#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

namespace HostPlatform {

namespace {

bool HexDigit(char c, unsigned* digit) {
    const char lower = static_cast<char>(c | 0x20);  // ASCII letters in lower case
    if (c >= '0' && c <= '9') {
        *digit = static_cast<unsigned>(c - '0');
    } else if (lower >= 'a' && lower <= 'f') {
        *digit = static_cast<unsigned>(lower - 'a' + 10);
    } else {
        return false;
    }
    return true;
}

// A value read from a file may hold a NUL: the whole text must be the word.
bool EqualsIgnoringCase(const std::string& text, const char* word) {
    return strcasecmp(text.c_str(), word) == 0 && text.size() == strlen(word);
}

}  // namespace

NumberStatus ParseIntegerMagnitude(const std::string& text, bool* negative, uint64_t* magnitude) {
    size_t i = 0;
    bool minus = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        minus = text[i] == '-';
        ++i;
    }
    unsigned base = 10;
    if (i + 1 < text.size() && text[i] == '0' && (text[i + 1] == 'x' || text[i + 1] == 'X')) {
        base = 16;
        i += 2;
    }
    if (i >= text.size()) {
        return NumberStatus::NotANumber;
    }
    // Every character is looked at before a too large value is called out of
    // range: "99999999999999999999x" is no number at all.
    bool overflow = false;
    uint64_t value = 0;
    for (; i < text.size(); ++i) {
        unsigned digit = 0;
        if (!HexDigit(text[i], &digit) || digit >= base) {
            return NumberStatus::NotANumber;
        }
        if (value > (UINT64_MAX - digit) / base) {
            overflow = true;
        }
        value = value * base + digit;
    }
    if (overflow) {
        return NumberStatus::OutOfRange;
    }
    *negative = minus;
    *magnitude = value;
    return NumberStatus::Ok;
}

namespace {

// An integer of at most `negativeLimit` below zero and `positiveLimit` above,
// as the low bits of its two's complement.
template <typename T>
NumberStatus ParseWithin(const std::string& text, uint64_t negativeLimit, uint64_t positiveLimit,
                         T* out) {
    bool negative = false;
    uint64_t magnitude = 0;
    const NumberStatus status = ParseIntegerMagnitude(text, &negative, &magnitude);
    if (status != NumberStatus::Ok) {
        return status;
    }
    if (magnitude > (negative ? negativeLimit : positiveLimit)) {
        return NumberStatus::OutOfRange;
    }
    *out = static_cast<T>(negative ? 0u - magnitude : magnitude);
    return NumberStatus::Ok;
}

}  // namespace

NumberStatus ParseUInt32(const std::string& text, uint32_t* out) {
    return ParseWithin(text, 0x80000000ull, 0xFFFFFFFFull, out);
}

NumberStatus ParseInt32(const std::string& text, int32_t* out) {
    return ParseWithin(text, 0x80000000ull, 0xFFFFFFFFull, out);
}

NumberStatus ParseInt64(const std::string& text, int64_t* out) {
    return ParseWithin(text, 0x8000000000000000ull, UINT64_MAX, out);
}

bool ParseBoolean(const std::string& text, bool* out) {
    if (EqualsIgnoringCase(text, "true") || text == "1") {
        *out = true;
    } else if (EqualsIgnoringCase(text, "false") || text == "0") {
        *out = false;
    } else {
        return false;
    }
    return true;
}

bool ParseFloat(const std::string& text, float* out) {
    if (text.empty()) {
        return false;
    }
    char* end = nullptr;
    const int savedErrno = errno;
    const float value = strtof(text.c_str(), &end);
    errno = savedErrno;
    if (end != text.c_str() + text.size()) {
        return false;
    }
    *out = value;
    return true;
}

}  // namespace HostPlatform
