#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

// A 128-bit class identifier made of four 32-bit words. In memory and in
// files each word is stored most significant byte first, so the 16 bytes and
// the 32-character hexadecimal form both read the words in order.
class FUID
{
public:
    using TUID = char[16];

    constexpr FUID() = default;
    constexpr FUID(uint32_t w1, uint32_t w2, uint32_t w3, uint32_t w4)
        : m_words { w1, w2, w3, w4 }
    { }

    static FUID fromBytes(const void *bytes)
    {
        const auto *b = static_cast<const unsigned char *>(bytes);
        FUID id;
        for (int w = 0; w < 4; ++w)
            id.m_words[w] = uint32_t(b[4 * w]) << 24 | uint32_t(b[4 * w + 1]) << 16
                | uint32_t(b[4 * w + 2]) << 8 | uint32_t(b[4 * w + 3]);
        return id;
    }

    void toBytes(void *out) const
    {
        auto *b = static_cast<unsigned char *>(out);
        for (int w = 0; w < 4; ++w) {
            b[4 * w] = static_cast<unsigned char>(m_words[w] >> 24);
            b[4 * w + 1] = static_cast<unsigned char>(m_words[w] >> 16);
            b[4 * w + 2] = static_cast<unsigned char>(m_words[w] >> 8);
            b[4 * w + 3] = static_cast<unsigned char>(m_words[w]);
        }
    }

    // 32 upper-case hexadecimal digits, two per byte.
    std::string toString() const
    {
        char text[33];
        for (int w = 0; w < 4; ++w)
            std::snprintf(text + 8 * w, 9, "%08X", static_cast<unsigned>(m_words[w]));
        return std::string(text, 32);
    }

    // Accepts exactly 32 hexadecimal digits of either case.
    bool fromString(const char *text)
    {
        if (!text || std::strlen(text) != 32)
            return false;
        uint32_t words[4] = {};
        for (int i = 0; i < 32; ++i) {
            const char c = text[i];
            uint32_t digit;
            if (c >= '0' && c <= '9')
                digit = uint32_t(c - '0');
            else if (c >= 'A' && c <= 'F')
                digit = uint32_t(c - 'A' + 10);
            else if (c >= 'a' && c <= 'f')
                digit = uint32_t(c - 'a' + 10);
            else
                return false;
            words[i / 8] = words[i / 8] << 4 | digit;
        }
        std::memcpy(m_words, words, sizeof words);
        return true;
    }

    constexpr uint32_t word(int i) const { return m_words[i]; }
    constexpr bool isValid() const { return m_words[0] | m_words[1] | m_words[2] | m_words[3]; }

    friend constexpr bool operator==(const FUID &a, const FUID &b)
    {
        return a.m_words[0] == b.m_words[0] && a.m_words[1] == b.m_words[1] && a.m_words[2] == b.m_words[2]
            && a.m_words[3] == b.m_words[3];
    }
    friend constexpr bool operator!=(const FUID &a, const FUID &b) { return !(a == b); }

private:
    uint32_t m_words[4] = { 0, 0, 0, 0 };
};
