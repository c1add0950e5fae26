#include "JpegEncoder.h"

#include "BitWriter.h"
#include "ForwardDct.h"
#include "HuffmanTables.h"

#include <algorithm>
#include <bit>
#include <initializer_list>
#include <cstring>
#include <memory>

#include <emmintrin.h>

namespace mjpg {

namespace {

constexpr int unitSize = 16;            // a coded unit is 16 x 16 pixels: four luminance blocks and two of chrominance
constexpr std::size_t unitBound = 4096; // bytes that a unit and the end of the image never exceed
constexpr std::size_t headerBound = 1024;

// Positions in zigzag order, in a block stored column by column.
constexpr std::uint8_t zigzagByColumns[64] = {0,  8,  1,  2,  9,  16, 24, 17, 10, 3,  4,  11, 18, 25, 32, 40,
                                              33, 26, 19, 12, 5,  6,  13, 20, 27, 34, 41, 48, 56, 49, 42, 35,
                                              28, 21, 14, 7,  15, 22, 29, 36, 43, 50, 57, 58, 51, 44, 37, 30,
                                              23, 31, 38, 45, 52, 59, 60, 53, 46, 39, 47, 54, 61, 62, 55, 63};

// Example tables of ITU-T T.81, Annex K.1, row by row.
constexpr std::uint8_t luminanceSteps[64] = {16, 11, 10, 16, 24,  40,  51,  61,  12, 12, 14, 19, 26,  58,  60,  55,
                                             14, 13, 16, 24, 40,  57,  69,  56,  14, 17, 22, 29, 51,  87,  80,  62,
                                             18, 22, 37, 56, 68,  109, 103, 77,  24, 35, 55, 64, 81,  104, 113, 92,
                                             49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98, 112, 100, 103, 99};
constexpr std::uint8_t chrominanceSteps[64] = {17, 18, 24, 47, 99, 99, 99, 99, 18, 21, 26, 66, 99, 99, 99, 99,
                                               24, 26, 56, 99, 99, 99, 99, 99, 47, 66, 99, 99, 99, 99, 99, 99,
                                               99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                                               99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99};

// The customary scale of the example tables, as the Independent JPEG Group's software defines it: 50 percent takes them
// as they are, 100 percent makes every step 1.
void scaleSteps(const std::uint8_t (&base)[64], int quality, std::uint8_t (&steps)[64])
{
    const double percent = std::clamp(quality, 100, bestQuality) / 100.0;
    const double scale = percent < 50.0 ? 50.0 / percent : 2.0 - percent / 50.0;
    for (int i = 0; i < 64; ++i)
        steps[i] = static_cast<std::uint8_t>(std::clamp(base[i] * scale + 0.5, 1.0, 255.0));
}

class HeaderWriter
{
public:
    explicit HeaderWriter(std::uint8_t* output) : m_output(output) {}

    std::uint8_t* position() const { return m_output; }

    void byte(int value) { *m_output++ = static_cast<std::uint8_t>(value); }

    void word(int value)
    {
        byte(value >> 8);
        byte(value);
    }

    void bytes(const std::uint8_t* values, std::size_t count)
    {
        std::memcpy(m_output, values, count);
        m_output += count;
    }

    void marker(int code) { word(0xFF00 | code); }

    void quantisation(int id, const std::uint8_t (&steps)[64])
    {
        marker(0xDB);
        word(67);
        byte(id);
        for (const std::uint8_t at : zigzagByColumns)
            byte(steps[at % 8 * 8 + at / 8]);
    }

    void huffman(int id, const HuffmanSpec& spec)
    {
        marker(0xC4);
        word(static_cast<int>(19 + spec.symbols.size()));
        byte(id);
        bytes(spec.lengths.data(), spec.lengths.size());
        bytes(spec.symbols.data(), spec.symbols.size());
    }

private:
    std::uint8_t* m_output;
};

void writeFrameHeader(HeaderWriter& header, int width, int height)
{
    header.marker(0xC0); // baseline
    header.word(17);
    header.byte(8);
    header.word(height);
    header.word(width);
    header.byte(3);
    for (const int component : {0x012200, 0x021101, 0x031101}) // id, sampling factors, quantisation table
    {
        header.byte(component >> 16);
        header.word(component);
    }
}

void writeScanHeader(HeaderWriter& header)
{
    header.marker(0xDA);
    header.word(12);
    header.byte(3);
    header.word(0x0100); // component, its DC and AC tables
    header.word(0x0211);
    header.word(0x0311);
    header.byte(0);
    header.byte(63);
    header.byte(0);
}

// The Huffman codes of one kind of component.
struct Coder
{
    HuffmanCodes dc;
    HuffmanCodes ac;
};

const Coder& luminanceCoder()
{
    static const Coder coder{codesOf(luminanceDc), codesOf(luminanceAc)};
    return coder;
}

const Coder& chrominanceCoder()
{
    static const Coder coder{codesOf(chrominanceDc), codesOf(chrominanceAc)};
    return coder;
}

// A value as its number of bits and those bits; negative values have theirs inverted.
struct Magnitude
{
    int count;
    std::uint32_t bits;

    explicit Magnitude(int value)
        : count(static_cast<int>(std::bit_width(static_cast<unsigned>(value < 0 ? -value : value)))),
          bits(static_cast<std::uint32_t>(value < 0 ? value - 1 : value) & ((1u << count) - 1u))
    {
    }
};

void putSymbol(BitWriter& writer, const HuffmanCodes& codes, int symbol, const Magnitude& magnitude)
{
    const std::uint32_t code = codes.code[symbol];
    writer.put(code << magnitude.count | magnitude.bits, codes.length[symbol] + magnitude.count);
}

// The coefficients in zigzag order, and which of them are not zero.
std::uint64_t orderZigzag(const std::int16_t* coefficients, std::int16_t* ordered)
{
    for (int i = 0; i < 64; ++i)
        ordered[i] = coefficients[zigzagByColumns[i]];
    std::uint64_t zeros = 0;
    for (int i = 0; i < 64; i += 16) {
        const __m128i low = _mm_load_si128(reinterpret_cast<const __m128i*>(ordered + i));
        const __m128i high = _mm_load_si128(reinterpret_cast<const __m128i*>(ordered + i + 8));
        const __m128i zero = _mm_setzero_si128();
        const __m128i equal = _mm_packs_epi16(_mm_cmpeq_epi16(low, zero), _mm_cmpeq_epi16(high, zero));
        zeros |= static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm_movemask_epi8(equal))) << i;
    }
    return ~zeros;
}

void putBlock(BitWriter& writer, const Coder& coder, const std::int16_t* coefficients, int& previousDc)
{
    alignas(16) std::int16_t ordered[64];
    std::uint64_t remaining = orderZigzag(coefficients, ordered) & ~std::uint64_t{1};

    const Magnitude dc(ordered[0] - previousDc);
    previousDc = ordered[0];
    putSymbol(writer, coder.dc, dc.count, dc);

    int last = 0;
    for (; remaining != 0; remaining &= remaining - 1) {
        const int at = std::countr_zero(remaining);
        int run = at - last - 1;
        for (; run >= 16; run -= 16)
            writer.put(coder.ac.code[0xF0], coder.ac.length[0xF0]);
        const Magnitude value(ordered[at]);
        putSymbol(writer, coder.ac, run << 4 | value.count, value);
        last = at;
    }
    if (last != 63) writer.put(coder.ac.code[0x00], coder.ac.length[0x00]);
}

// Samples of one coded unit.
struct Unit
{
    alignas(16) float luminance[4][64];
    alignas(16) float blue[64];
    alignas(16) float red[64];
};

struct Colours
{
    __m128 red, green, blue;

    friend Colours operator+(const Colours& a, const Colours& b)
    {
        return {_mm_add_ps(a.red, b.red), _mm_add_ps(a.green, b.green), _mm_add_ps(a.blue, b.blue)};
    }
};

Colours fourPixels(const std::uint32_t* pixels)
{
    const __m128i values = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
    const __m128i byte = _mm_set1_epi32(0xFF);
    return {_mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(values, 16), byte)),
            _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(values, 8), byte)),
            _mm_cvtepi32_ps(_mm_and_si128(values, byte))};
}

__m128 weighted(const Colours& c, float red, float green, float blue)
{
    return _mm_add_ps(_mm_add_ps(_mm_mul_ps(c.red, _mm_set1_ps(red)), _mm_mul_ps(c.green, _mm_set1_ps(green))),
                      _mm_mul_ps(c.blue, _mm_set1_ps(blue)));
}

// Sums of neighbours: of a's pairs, then of b's.
__m128 pairSums(__m128 a, __m128 b)
{
    return _mm_add_ps(_mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)), _mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)));
}

// Two rows of eight pixels: sixteen luminances, and the four colours of their 2 x 2 means.
// Colour equations: ITU-R BT.601, in the full range that JFIF uses.
void convertPair(const std::uint32_t* upper, const std::uint32_t* lower, float* luminance, float* blue, float* red)
{
    const __m128 level = _mm_set1_ps(128.0f);
    const Colours pixels[4] = {fourPixels(upper), fourPixels(upper + 4), fourPixels(lower), fourPixels(lower + 4)};
    for (int i = 0; i < 4; ++i)
        _mm_store_ps(luminance + 4 * i, _mm_sub_ps(weighted(pixels[i], 0.299f, 0.587f, 0.114f), level));

    const Colours left = pixels[0] + pixels[2];
    const Colours right = pixels[1] + pixels[3];
    const Colours sums{pairSums(left.red, right.red), pairSums(left.green, right.green),
                       pairSums(left.blue, right.blue)};
    constexpr float quarter = 0.25f;
    _mm_store_ps(blue, weighted(sums, -0.168735892f * quarter, -0.331264108f * quarter, 0.5f * quarter));
    _mm_store_ps(red, weighted(sums, 0.5f * quarter, -0.418687589f * quarter, -0.081312411f * quarter));
}

void convertUnit(const std::uint32_t* pixels, std::size_t stride, Unit& unit)
{
    for (std::size_t row = 0; row < unitSize; row += 2)
        for (std::size_t half = 0; half < 2; ++half) {
            const std::uint32_t* const upper = pixels + row * stride + 8 * half;
            convertPair(upper, upper + stride, unit.luminance[row / 8 * 2 + half] + row % 8 * 8,
                        unit.blue + row / 2 * 8 + 4 * half, unit.red + row / 2 * 8 + 4 * half);
        }
}

// Sixteen rows of the frame as 32-bit pixels; the frame's last column and row are repeated to fill whole units.
class Strip
{
public:
    explicit Strip(const SourceFrame& frame)
        : m_frame(frame), m_stride(static_cast<std::size_t>(frame.width + unitSize - 1) / unitSize * unitSize),
          m_pixels(std::make_unique<std::uint32_t[]>(m_stride * unitSize))
    {
    }

    void load(int top)
    {
        for (int row = 0; row < unitSize; ++row)
            loadRow(m_frame.topRow + std::min(top + row, m_frame.height - 1) * m_frame.stride,
                    m_pixels.get() + static_cast<std::size_t>(row) * m_stride);
    }

    std::size_t stride() const { return m_stride; }
    const std::uint32_t* pixels() const { return m_pixels.get(); }

private:
    void loadRow(const std::uint8_t* source, std::uint32_t* target) const
    {
        const auto width = static_cast<std::size_t>(m_frame.width);
        if (m_frame.bytesPerPixel == 4)
            std::memcpy(target, source, width * 4);
        else
            for (std::size_t x = 0; x < width; ++x, source += 3)
                target[x] = static_cast<std::uint32_t>(source[0] | source[1] << 8 | source[2] << 16);
        std::fill(target + width, target + m_stride, target[width - 1]);
    }

    const SourceFrame& m_frame;
    std::size_t m_stride;
    std::unique_ptr<std::uint32_t[]> m_pixels;
};

class Encoder
{
public:
    Encoder(const SourceFrame& frame, int quality) : m_frame(frame)
    {
        scaleSteps(luminanceSteps, quality, m_luminanceSteps);
        scaleSteps(chrominanceSteps, quality, m_chrominanceSteps);
        m_luminance = quantiserOf(m_luminanceSteps);
        m_chrominance = quantiserOf(m_chrominanceSteps);
    }

    std::uint8_t* writeHeader(std::uint8_t* output) const
    {
        constexpr std::uint8_t jfif[] = {'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0};
        HeaderWriter header(output);
        header.marker(0xD8);
        header.marker(0xE0);
        header.word(2 + sizeof jfif);
        header.bytes(jfif, sizeof jfif);
        header.quantisation(0, m_luminanceSteps);
        header.quantisation(1, m_chrominanceSteps);
        writeFrameHeader(header, m_frame.width, m_frame.height);
        header.huffman(0x00, luminanceDc);
        header.huffman(0x10, luminanceAc);
        header.huffman(0x01, chrominanceDc);
        header.huffman(0x11, chrominanceAc);
        writeScanHeader(header);
        return header.position();
    }

    // The end of the coded units, or null when they do not fit.
    std::uint8_t* writeUnits(std::uint8_t* output, const std::uint8_t* end)
    {
        BitWriter writer(output);
        Strip strip(m_frame);
        Unit unit;
        for (int top = 0; top < m_frame.height; top += unitSize) {
            strip.load(top);
            for (std::size_t left = 0; left < strip.stride(); left += unitSize) {
                if (static_cast<std::size_t>(end - writer.position()) < unitBound) return nullptr;
                convertUnit(strip.pixels() + left, strip.stride(), unit);
                putUnit(writer, unit);
            }
        }
        return writer.finish();
    }

private:
    void putUnit(BitWriter& writer, const Unit& unit)
    {
        for (const auto& samples : unit.luminance)
            putSamples(writer, samples, m_luminance, luminanceCoder(), m_previousDc[0]);
        putSamples(writer, unit.blue, m_chrominance, chrominanceCoder(), m_previousDc[1]);
        putSamples(writer, unit.red, m_chrominance, chrominanceCoder(), m_previousDc[2]);
    }

    static void putSamples(BitWriter& writer, const float* samples, const Quantiser& quantiser, const Coder& coder,
                           int& previousDc)
    {
        alignas(16) std::int16_t coefficients[64];
        forwardDct(samples, quantiser, coefficients);
        putBlock(writer, coder, coefficients, previousDc);
    }

    const SourceFrame& m_frame;
    std::uint8_t m_luminanceSteps[64];
    std::uint8_t m_chrominanceSteps[64];
    Quantiser m_luminance;
    Quantiser m_chrominance;
    int m_previousDc[3] = {};
};

} // namespace

std::uint64_t jpegBound(int width, int height)
{
    const auto units = [](int size) { return static_cast<std::uint64_t>(size + unitSize - 1) / unitSize; };
    constexpr std::uint64_t bytesOfUnit = 6 * unitSize * unitSize; // the finest steps on noise take less than 5 a pixel
    return headerBound + unitBound + units(width) * units(height) * bytesOfUnit;
}

std::size_t encodeJpeg(const SourceFrame& frame, int quality, std::uint8_t* output, std::size_t capacity)
{
    if (capacity < headerBound + unitBound) return 0;
    Encoder encoder(frame, quality);
    std::uint8_t* end = encoder.writeUnits(encoder.writeHeader(output), output + capacity);
    if (!end) return 0;
    *end++ = 0xFF;
    *end++ = 0xD9;
    return static_cast<std::size_t>(end - output);
}

} // namespace mjpg
