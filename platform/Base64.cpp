#include "Base64.h"

#include <array>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::array<signed char, 256> MakeTable() {
    std::array<signed char, 256> table{};
    for (auto& entry : table)
        entry = -1;
    for (int i = 0; i < 64; ++i)
        table[static_cast<unsigned char>(kAlphabet[i])] = static_cast<signed char>(i);
    return table;
}

constexpr std::array<signed char, 256> kTable = MakeTable();

} // namespace

std::string Base64::Encode(std::string_view bytes, size_t lineLength) {
    std::string out;
    size_t encoded = (bytes.size() + 2) / 3 * 4;
    out.reserve(encoded + (lineLength ? encoded / lineLength + 1 : 0));
    size_t column = 0;
    auto put = [&](char c) {
        if (lineLength && column == lineLength) {
            out += '\n';
            column = 0;
        }
        out += c;
        ++column;
    };
    size_t i = 0;
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    for (; i + 3 <= bytes.size(); i += 3) {
        unsigned n = (data[i] << 16) | (data[i + 1] << 8) | data[i + 2];
        put(kAlphabet[(n >> 18) & 63]);
        put(kAlphabet[(n >> 12) & 63]);
        put(kAlphabet[(n >> 6) & 63]);
        put(kAlphabet[n & 63]);
    }
    size_t rest = bytes.size() - i;
    if (rest == 1) {
        unsigned n = data[i] << 16;
        put(kAlphabet[(n >> 18) & 63]);
        put(kAlphabet[(n >> 12) & 63]);
        put('=');
        put('=');
    } else if (rest == 2) {
        unsigned n = (data[i] << 16) | (data[i + 1] << 8);
        put(kAlphabet[(n >> 18) & 63]);
        put(kAlphabet[(n >> 12) & 63]);
        put(kAlphabet[(n >> 6) & 63]);
        put('=');
    }
    return out;
}

bool Base64Decoder::Decode(std::string_view text, std::string& bytes) {
    bytes.clear();
    bytes.reserve(text.size() / 4 * 3);
    unsigned accumulator = 0;
    int bits = 0;
    int padding = 0;
    int group = 0;
    for (char c : text) {
        if (c == ' ' || c == '\n' || c == '\r' || c == '\t')
            continue;
        if (c == '=') {
            ++padding;
            ++group;
            continue;
        }
        signed char value = kTable[static_cast<unsigned char>(c)];
        if (value < 0 || padding > 0)
            return false;
        accumulator = (accumulator << 6) | static_cast<unsigned>(value);
        bits += 6;
        ++group;
        if (bits >= 8) {
            bits -= 8;
            bytes += static_cast<char>((accumulator >> bits) & 0xFF);
        }
    }
    return group % 4 == 0 && padding <= 2;
}

std::string Base64Decoder::Decode(std::string_view text) {
    std::string bytes;
    Decode(text, bytes);
    return bytes;
}
