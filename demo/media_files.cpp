#include "demo/media_files.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace korvadex::demo {

namespace {

void PutLittle(std::string& bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i)
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
}

void PutBig16(std::string& bytes, unsigned value) {
    bytes += static_cast<char>(value >> 8 & 0xFF);
    bytes += static_cast<char>(value & 0xFF);
}

// ---- bitmaps

std::string BitmapHeaders(const Canvas& picture, unsigned bits, unsigned colors, std::size_t rowLength) {
    const auto pixelBytes = static_cast<std::uint32_t>(rowLength * static_cast<std::size_t>(picture.Height()));
    const std::uint32_t start = 14 + 40 + 4 * colors;
    std::string bytes = "BM";
    PutLittle(bytes, start + pixelBytes, 4);
    PutLittle(bytes, 0, 4);
    PutLittle(bytes, start, 4);
    PutLittle(bytes, 40, 4);
    PutLittle(bytes, static_cast<std::uint32_t>(picture.Width()), 4);
    PutLittle(bytes, static_cast<std::uint32_t>(picture.Height()), 4);
    PutLittle(bytes, 1, 2);
    PutLittle(bytes, bits, 2);
    PutLittle(bytes, 0, 4); // not compressed
    PutLittle(bytes, pixelBytes, 4);
    PutLittle(bytes, 2835, 4); // 72 dots to the inch
    PutLittle(bytes, 2835, 4);
    PutLittle(bytes, colors, 4);
    PutLittle(bytes, 0, 4);
    return bytes;
}

std::size_t RowLength(const Canvas& picture, std::size_t bytesPerPixel) {
    return (static_cast<std::size_t>(picture.Width()) * bytesPerPixel + 3) / 4 * 4;
}

// A channel in `levels` steps, rounded up or down by the place in a 4 x 4 pattern.
unsigned Dither(std::uint8_t value, unsigned levels, int x, int y) {
    static constexpr unsigned Pattern[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
    const unsigned scaled = value * (levels - 1) * 16 / 255;
    return std::min((scaled + Pattern[y % 4][x % 4]) / 16, levels - 1);
}

// ---- JPEG

constexpr std::array<std::uint8_t, 64> ZigZag = {0,  1,  8,  16, 9,  2,  3,  10, 17, 24, 32, 25, 18, 11, 4,  5,
                                                 12, 19, 26, 33, 40, 48, 41, 34, 27, 20, 13, 6,  7,  14, 21, 28,
                                                 35, 42, 49, 56, 57, 50, 43, 36, 29, 22, 15, 23, 30, 37, 44, 51,
                                                 58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62, 63};

constexpr std::array<std::uint8_t, 64> LumaSteps = {
    16, 11,  10,  16, 24, 40, 51, 61, 12,  12,  14,  19,  26, 58, 60, 55,  14,  13,  16,  24, 40, 57,
    69, 56,  14,  17, 22, 29, 51, 87, 80,  62,  18,  22,  37, 56, 68, 109, 103, 77,  24,  35, 55, 64,
    81, 104, 113, 92, 49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98,  112, 100, 103, 99};
constexpr std::array<std::uint8_t, 64> ChromaSteps = {17, 18, 24, 47, 99, 99, 99, 99, 18, 21, 26, 66, 99, 99, 99, 99,
                                                      24, 26, 56, 99, 99, 99, 99, 99, 47, 66, 99, 99, 99, 99, 99, 99,
                                                      99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                                                      99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99};

// cos(k pi / 16) for k = 0..7, times 2^12.
constexpr std::array<std::int32_t, 8> Cosine = {4096, 4017, 3784, 3406, 2896, 2276, 1567, 799};

constexpr std::int32_t CosineOf(int k) {
    k %= 32;
    if (k > 16)
        k = 32 - k;
    return k < 8 ? Cosine[static_cast<std::size_t>(k)] : (k == 8 ? 0 : -Cosine[static_cast<std::size_t>(16 - k)]);
}

// A code table: how many codes there are of each length from 1 to 16 bits, and the symbols in their order.
// One flat table of our own serves every picture: simple, and a few percent larger than a tuned one.
//   DC: the sizes 0 to 11, four bits each.
//   AC: 00 (end of block), F0 (sixteen zeros) and run/size pairs; short codes for short runs of small values.
struct CodeTable {
    std::array<std::uint8_t, 16> counts{};
    std::vector<std::uint8_t> symbols;
    std::array<std::uint16_t, 256> code{};
    std::array<std::uint8_t, 256> length{};

    void Assign() {
        unsigned next = 0;
        std::size_t symbol = 0;
        for (std::size_t bits = 1; bits <= 16; ++bits, next <<= 1)
            for (unsigned i = 0; i < counts[bits - 1]; ++i, ++next, ++symbol) {
                code[symbols[symbol]] = static_cast<std::uint16_t>(next);
                length[symbols[symbol]] = static_cast<std::uint8_t>(bits);
            }
    }
};

CodeTable DcTable() {
    CodeTable table;
    table.counts[3] = 12;
    for (std::uint8_t size = 0; size < 12; ++size)
        table.symbols.push_back(size);
    table.Assign();
    return table;
}

CodeTable AcTable() {
    CodeTable table;
    std::vector<std::pair<int, std::uint8_t>> weighed;
    for (int run = 0; run < 16; ++run)
        for (int size = 1; size <= 10; ++size)
            weighed.emplace_back(run + 3 * (size - 1), static_cast<std::uint8_t>(run << 4 | size));
    weighed.emplace_back(-1, std::uint8_t{0x00});
    weighed.emplace_back(12, std::uint8_t{0xF0});
    std::stable_sort(weighed.begin(), weighed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    // 162 symbols; no code may consist of ones alone, which the room left in the last length sees to.
    table.counts = {0, 1, 2, 3, 3, 4, 5, 6, 8, 0, 130, 0, 0, 0, 0, 0};
    for (const auto& entry : weighed)
        table.symbols.push_back(entry.second);
    table.Assign();
    return table;
}

class JpegWriter {
  public:
    JpegWriter(const Canvas& canvas, int quality) : picture(canvas) {
        const int scale = quality < 50 ? 5000 / quality : 200 - 2 * quality;
        for (std::size_t i = 0; i < 64; ++i) {
            steps[0][i] = std::clamp((LumaSteps[i] * scale + 50) / 100, 1, 255);
            steps[1][i] = std::clamp((ChromaSteps[i] * scale + 50) / 100, 1, 255);
        }
    }

    std::string Write() {
        WriteHeaders();
        for (int y = 0; y < picture.Height(); y += 8)
            for (int x = 0; x < picture.Width(); x += 8)
                for (int channel = 0; channel < 3; ++channel)
                    WriteBlock(x, y, channel);
        PutBits(0x7F, 7); // fills the last byte
        bytes += "\xFF\xD9";
        return std::move(bytes);
    }

  private:
    using Block = std::array<std::int32_t, 64>;

    void WriteTable(char id, const CodeTable& table) {
        bytes += "\xFF\xC4";
        PutBig16(bytes, static_cast<unsigned>(2 + 1 + 16 + table.symbols.size()));
        bytes += id;
        bytes.append(table.counts.begin(), table.counts.end());
        bytes.append(table.symbols.begin(), table.symbols.end());
    }

    void WriteHeaders() {
        bytes.append("\xFF\xD8\xFF\xE0\x00\x10JFIF\x00\x01\x01\x01\x00\x48\x00\x48\x00\x00", 20);
        for (std::size_t table = 0; table < 2; ++table) {
            bytes.append("\xFF\xDB\x00\x43", 4);
            bytes += static_cast<char>(table);
            for (const std::uint8_t at : ZigZag)
                bytes += static_cast<char>(steps[table][at]);
        }
        bytes.append("\xFF\xC0\x00\x11\x08", 5);
        PutBig16(bytes, static_cast<unsigned>(picture.Height()));
        PutBig16(bytes, static_cast<unsigned>(picture.Width()));
        bytes.append("\x03\x01\x11\x00\x02\x11\x01\x03\x11\x01", 10);
        WriteTable('\x00', dc);
        WriteTable('\x10', ac);
        bytes.append("\xFF\xDA\x00\x0C\x03\x01\x00\x02\x00\x03\x00\x00\x3F\x00", 14);
    }

    void PutBits(unsigned value, unsigned count) {
        pending = pending << count | (value & ((1u << count) - 1));
        pendingCount += count;
        while (pendingCount >= 8) {
            const char byte = static_cast<char>(pending >> (pendingCount - 8) & 0xFF);
            bytes += byte;
            if (byte == '\xFF')
                bytes += '\0';
            pendingCount -= 8;
        }
    }

    // Y, Cb or Cr, 0 in the middle of its range.
    std::int32_t Sample(int x, int y, int channel) const {
        const Color c = picture.At(std::min(x, picture.Width() - 1), std::min(y, picture.Height() - 1));
        if (channel == 0)
            return (299 * c.red + 587 * c.green + 114 * c.blue) / 1000 - 128;
        if (channel == 1)
            return (-169 * c.red - 331 * c.green + 500 * c.blue) / 1000;
        return (500 * c.red - 419 * c.green - 81 * c.blue) / 1000;
    }

    // The two-dimensional cosine transform, first along the rows, then down the columns; results times 8.
    static void Transform(Block& block) {
        Block rows{};
        for (std::size_t y = 0; y < 8; ++y)
            for (std::size_t u = 0; u < 8; ++u) {
                std::int32_t sum = 0;
                for (std::size_t x = 0; x < 8; ++x)
                    sum += block[8 * y + x] * Cosines[u][x];
                rows[8 * y + u] = sum / 256;
            }
        for (std::size_t v = 0; v < 8; ++v)
            for (std::size_t u = 0; u < 8; ++u) {
                std::int32_t sum = 0;
                for (std::size_t y = 0; y < 8; ++y)
                    sum += rows[8 * y + u] * Cosines[v][y];
                block[8 * v + u] = sum / 8192;
            }
    }

    void WriteValue(const CodeTable& table, unsigned run, std::int32_t value) {
        unsigned size = 0;
        for (auto rest = static_cast<unsigned>(value < 0 ? -value : value); rest > 0; rest >>= 1)
            ++size;
        const unsigned symbol = run << 4 | size;
        PutBits(table.code[symbol], table.length[symbol]);
        if (size > 0)
            PutBits(static_cast<unsigned>(value < 0 ? value - 1 : value), size);
    }

    void WriteBlock(int left, int top, int channel) {
        Block block{};
        for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x)
                block[static_cast<std::size_t>(8 * y + x)] = Sample(left + x, top + y, channel);
        Transform(block);
        const auto& step = steps[channel == 0 ? 0 : 1];
        for (std::size_t i = 0; i < 64; ++i) {
            const std::int32_t half = (block[i] < 0 ? -4 : 4) * step[i];
            block[i] = std::clamp((block[i] + half) / (8 * step[i]), -1023, 1023);
        }
        auto& last = lastDc[static_cast<std::size_t>(channel)];
        WriteValue(dc, 0, block[0] - last);
        last = block[0];
        unsigned run = 0;
        for (std::size_t i = 1; i < 64; ++i) {
            const std::int32_t value = block[ZigZag[i]];
            if (value == 0) {
                ++run;
                continue;
            }
            for (; run > 15; run -= 16)
                PutBits(ac.code[0xF0], ac.length[0xF0]);
            WriteValue(ac, run, value);
            run = 0;
        }
        if (run > 0)
            PutBits(ac.code[0x00], ac.length[0x00]);
    }

    // Cosines[u][x] = c(u) cos((2x + 1) u pi / 16) / 2 with c(0) = 1 / sqrt 2, times 2^12.
    static constexpr std::array<std::array<std::int32_t, 8>, 8> Cosines = [] {
        std::array<std::array<std::int32_t, 8>, 8> table{};
        for (int u = 0; u < 8; ++u)
            for (int x = 0; x < 8; ++x)
                table[static_cast<std::size_t>(u)][static_cast<std::size_t>(x)] =
                    u == 0 ? 1448 : CosineOf((2 * x + 1) * u) / 2;
        return table;
    }();

    const Canvas& picture;
    std::array<std::array<std::int32_t, 64>, 2> steps{};
    const CodeTable dc = DcTable(), ac = AcTable();
    std::array<std::int32_t, 3> lastDc{};
    std::string bytes;
    unsigned pending = 0, pendingCount = 0;
};

// ---- sound

// A wave of that phase (0 to 1 is one turn), from -1 to 1: two parabolas, close enough to a sine for the ear.
double Wave(double phase) {
    phase -= static_cast<double>(static_cast<long>(phase));
    return phase < 0.5 ? 16 * phase * (0.5 - phase) : -16 * (phase - 0.5) * (1 - phase);
}

std::string Wav(const std::string& samples, std::uint32_t rate) {
    std::string bytes = "RIFF";
    PutLittle(bytes, static_cast<std::uint32_t>(36 + samples.size()), 4);
    bytes += "WAVEfmt ";
    PutLittle(bytes, 16, 4);
    PutLittle(bytes, 1, 2); // plain samples
    PutLittle(bytes, 1, 2); // one channel
    PutLittle(bytes, rate, 4);
    PutLittle(bytes, rate, 4); // bytes a second
    PutLittle(bytes, 1, 2);
    PutLittle(bytes, 8, 2);
    bytes += "data";
    PutLittle(bytes, static_cast<std::uint32_t>(samples.size()), 4);
    return bytes + samples;
}

char ByteSample(double level) {
    return static_cast<char>(static_cast<unsigned char>(128.5 + 100 * level));
}

} // namespace

std::string Bitmap24(const Canvas& picture) {
    const std::size_t rowLength = RowLength(picture, 3);
    std::string bytes = BitmapHeaders(picture, 24, 0, rowLength);
    for (int y = picture.Height() - 1; y >= 0; --y) { // bottom row first
        std::string row;
        for (int x = 0; x < picture.Width(); ++x) {
            const Color color = picture.At(x, y);
            row += static_cast<char>(color.blue);
            row += static_cast<char>(color.green);
            row += static_cast<char>(color.red);
        }
        row.resize(rowLength, '\0');
        bytes += row;
    }
    return bytes;
}

std::string Bitmap8(const Canvas& picture) {
    constexpr unsigned Reds = 6, Greens = 7, Blues = 6;
    const std::size_t rowLength = RowLength(picture, 1);
    std::string bytes = BitmapHeaders(picture, 8, 256, rowLength);
    for (unsigned i = 0; i < 256; ++i) {
        const unsigned entry = std::min(i, Reds * Greens * Blues - 1);
        PutLittle(bytes, entry % Blues * 255 / (Blues - 1), 1);
        PutLittle(bytes, entry / Blues % Greens * 255 / (Greens - 1), 1);
        PutLittle(bytes, entry / Blues / Greens * 255 / (Reds - 1), 1);
        PutLittle(bytes, 0, 1);
    }
    for (int y = picture.Height() - 1; y >= 0; --y) {
        std::string row;
        for (int x = 0; x < picture.Width(); ++x) {
            const Color color = picture.At(x, y);
            const unsigned red = Dither(color.red, Reds, x, y), green = Dither(color.green, Greens, x, y);
            row += static_cast<char>((red * Greens + green) * Blues + Dither(color.blue, Blues, x, y));
        }
        row.resize(rowLength, '\0');
        bytes += row;
    }
    return bytes;
}

std::string Jpeg(const Canvas& picture, int quality) {
    return JpegWriter(picture, quality).Write();
}

std::string EngineHum(int turnsPerSecond) {
    constexpr int Rate = 22050;
    std::string samples;
    for (int i = 0; i < Rate; ++i) {
        const double turns = static_cast<double>(i) * turnsPerSecond / Rate;
        const double beat = 0.8 + 0.2 * Wave(turns / turnsPerSecond * 4);
        samples += ByteSample(beat * (0.5 * Wave(turns) + 0.3 * Wave(2 * turns) + 0.15 * Wave(3 * turns)));
    }
    return Wav(samples, Rate);
}

std::string WarningHorn() {
    constexpr int Rate = 11025;
    std::string samples;
    for (int i = 0; i < Rate / 2; ++i) {
        const int tone = i / (Rate / 8) % 2 == 0 ? 880 : 660;
        samples += ByteSample(0.7 * Wave(static_cast<double>(i) * tone / Rate));
    }
    return Wav(samples, Rate);
}

} // namespace korvadex::demo
