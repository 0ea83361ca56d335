// One description of a fuzz input, two directions: Decoder reads the fields
// from fuzzer bytes (through FuzzedDataProvider), Encoder writes the bytes that
// decode to given fields (for the seed corpus). A model describes itself once
// with a template Visit(codec, fields), so the two cannot drift apart.
//
// FuzzedDataProvider takes strings and byte runs from the front of the input
// and integers from the back; the encoder keeps the two parts apart and joins
// them at the end.
#ifndef UILAYER_FUZZ_CODEC_H
#define UILAYER_FUZZ_CODEC_H

#include <fuzzer/FuzzedDataProvider.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace UilayerFuzz {

class Decoder {
public:
    static constexpr bool kDecoding = true;

    Decoder(const uint8_t* data, size_t size) : m_provider(data, size) {}

    template <typename T>
    void Int(T& value, T min, T max) {
        value = m_provider.ConsumeIntegralInRange<T>(min, max);
    }
    void String(std::string& text, size_t maxLength) {
        text = m_provider.ConsumeRandomLengthString(maxLength);
    }
    void Bytes(std::vector<uint8_t>& bytes, size_t count) {
        bytes = m_provider.ConsumeBytes<uint8_t>(count);
    }
    bool Exhausted() { return m_provider.remaining_bytes() == 0; }

private:
    FuzzedDataProvider m_provider;
};

class Encoder {
public:
    static constexpr bool kDecoding = false;

    template <typename T>
    void Int(T& value, T min, T max) {
        static_assert(std::is_integral<T>::value, "integers only");
        if (value < min || value > max) {
            throw std::out_of_range("seed value outside its range");
        }
        using U = typename std::make_unsigned<T>::type;
        const U range = static_cast<U>(static_cast<U>(max) - static_cast<U>(min));
        const U offset = static_cast<U>(static_cast<U>(value) - static_cast<U>(min));
        // The decoder reads one byte per 8 bits of the range, most significant
        // first, from the back of the input.
        size_t bytes = 0;
        while (bytes < sizeof(T) && (static_cast<uint64_t>(range) >> (8 * bytes)) > 0) {
            ++bytes;
        }
        for (size_t i = bytes; i > 0; --i) {
            m_back.push_back(static_cast<uint8_t>(static_cast<uint64_t>(offset) >> (8 * (i - 1))));
        }
    }
    void String(std::string& text, size_t maxLength) {
        if (text.size() > maxLength) {
            throw std::length_error("seed string longer than its field");
        }
        for (char c : text) {
            m_front.push_back(static_cast<uint8_t>(c));
            if (c == '\\') {
                m_front.push_back('\\');
            }
        }
        if (text.size() < maxLength) {
            // A backslash and any other character end the string.
            m_front.push_back('\\');
            m_front.push_back('n');
        }
    }
    void Bytes(std::vector<uint8_t>& bytes, size_t count) {
        if (bytes.size() != count) {
            throw std::length_error("seed byte run of the wrong length");
        }
        m_front.insert(m_front.end(), bytes.begin(), bytes.end());
    }
    bool Exhausted() { return false; }

    // The input: the front part, then the integers in reverse reading order.
    std::vector<uint8_t> Finish() const {
        std::vector<uint8_t> data = m_front;
        data.insert(data.end(), m_back.rbegin(), m_back.rend());
        return data;
    }

private:
    std::vector<uint8_t> m_front;
    std::vector<uint8_t> m_back;
};

// Helpers built on the two primitives, valid for both codecs.

template <typename Codec>
void Bool(Codec& codec, bool& value) {
    uint8_t bit = value ? 1 : 0;
    codec.Int(bit, uint8_t{0}, uint8_t{1});
    value = bit != 0;
}

// A value from a short list of interesting ones, or any value of the type.
template <typename Codec, typename T, size_t N>
void Pick(Codec& codec, T& value, const T (&known)[N]) {
    uint8_t choice = static_cast<uint8_t>(N);
    if (!Codec::kDecoding) {
        for (size_t i = 0; i < N; ++i) {
            if (known[i] == value) {
                choice = static_cast<uint8_t>(i);
                break;
            }
        }
    }
    codec.Int(choice, uint8_t{0}, static_cast<uint8_t>(N));
    if (choice < N) {
        value = known[choice];
    } else {
        codec.Int(value, std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
    }
}

// A value in [min, max], or (less often in practice) any value of the type.
template <typename Codec, typename T>
void Small(Codec& codec, T& value, T min, T max) {
    bool small = value >= min && value <= max;
    Bool(codec, small);
    if (small) {
        codec.Int(value, min, max);
    } else {
        codec.Int(value, std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
    }
}

template <typename Codec>
void Float(Codec& codec, float& value) {
    uint32_t bits = 0;
    memcpy(&bits, &value, sizeof(bits));
    codec.Int(bits, uint32_t{0}, UINT32_MAX);
    memcpy(&value, &bits, sizeof(bits));
}

// A list of at most `maxCount` elements, each described by `element`.
template <typename Codec, typename T, typename Visit>
void List(Codec& codec, std::vector<T>& items, size_t maxCount, Visit element) {
    size_t count = items.size();
    if (!Codec::kDecoding && count > maxCount) {
        throw std::length_error("seed list longer than its field");
    }
    codec.Int(count, size_t{0}, maxCount);
    if (Codec::kDecoding) {
        items.assign(count, T());
    }
    for (T& item : items) {
        element(codec, item);
    }
}

}  // namespace UilayerFuzz

#endif  // UILAYER_FUZZ_CODEC_H
