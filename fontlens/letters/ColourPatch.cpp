#include "fontlens/letters/ColourPatch.h"

#include <algorithm>
#include <cmath>

namespace kerval::letters {

namespace {

constexpr int stripHeight = 64;
constexpr int mostSamples = 2500; // by which the background is found
constexpr int rounds = 8;
constexpr std::size_t terms = 6;

using Terms = std::array<double, terms>;

Terms termsAt(double x, double y)
{
    return {1, x, y, x * x, x * y, y * y};
}

// Gauss with pivots; the system is small and regular thanks to the ridge on its diagonal.
std::array<Terms, 3> solved(std::array<Terms, terms> a, std::array<Terms, 3> right)
{
    for (std::size_t i = 0; i < terms; ++i) {
        std::size_t pivot = i;
        for (std::size_t k = i + 1; k < terms; ++k)
            pivot = std::abs(a[k][i]) > std::abs(a[pivot][i]) ? k : pivot;
        std::swap(a[i], a[pivot]);
        for (Terms& column : right)
            std::swap(column[i], column[pivot]);
        for (std::size_t k = i + 1; k < terms; ++k) {
            const double factor = a[k][i] / a[i][i];
            for (std::size_t j = i; j < terms; ++j)
                a[k][j] -= factor * a[i][j];
            for (Terms& column : right)
                column[k] -= factor * column[i];
        }
    }
    for (std::size_t i = terms; i-- > 0;) {
        for (Terms& column : right) {
            for (std::size_t j = i + 1; j < terms; ++j)
                column[i] -= a[i][j] * column[j];
            column[i] /= a[i][i];
        }
    }
    return right;
}

float medianOf(std::vector<float>& values)
{
    const auto middle = values.begin() + long(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

ColourPatch::ColourPatch(const QImage& picture, const QRect& part)
    : m_corner(part.topLeft())
{
    m_reduction = std::max(1.0, double(std::max(part.width(), part.height())) / mostSide);
    m_width = std::max(1, int(part.width() / m_reduction));
    m_height = std::max(1, int(part.height() / m_reduction));
    const std::size_t count = std::size_t(m_width) * std::size_t(m_height);
    for (std::vector<float>& channel : m_channels)
        channel.assign(count, 0);
    std::vector<float> pixels(count, 0);
    // Strip by strip: the part as a whole may be large, in whatever format.
    for (int top = 0; top < part.height(); top += stripHeight) {
        const QRect strip(part.left(), part.top() + top, part.width(), std::min(stripHeight, part.height() - top));
        const QImage lines = picture.copy(strip).convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < lines.height(); ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(lines.constScanLine(y));
            const int targetY = std::min(m_height - 1, int((top + y) / m_reduction));
            for (int x = 0; x < lines.width(); ++x) {
                const QRgb colour = line[x];
                const std::size_t target = place(std::min(m_width - 1, int(x / m_reduction)), targetY);
                const float opaque = float(qAlpha(colour)) / 255;
                const float white = 255 * (1 - opaque);
                m_channels[0][target] += white + opaque * float(qRed(colour));
                m_channels[1][target] += white + opaque * float(qGreen(colour));
                m_channels[2][target] += white + opaque * float(qBlue(colour));
                pixels[target] += 1;
            }
        }
    }
    for (std::vector<float>& channel : m_channels) {
        for (std::size_t i = 0; i < count; ++i)
            channel[i] /= std::max(1.0F, pixels[i]);
    }
}

QPointF ColourPatch::fromPicture(const QPointF& point) const
{
    return (point - m_corner) / m_reduction;
}

QPointF ColourPatch::toPicture(const QPointF& point) const
{
    return point * m_reduction + m_corner;
}

ColourPatch::Colour ColourPatch::at(int x, int y) const
{
    const std::size_t i = place(x, y);
    return {m_channels[0][i], m_channels[1][i], m_channels[2][i]};
}

float ColourPatch::length(const Colour& colour)
{
    return std::sqrt((colour[0] * colour[0] + colour[1] * colour[1] + colour[2] * colour[2]) / 3);
}

void ColourPatch::subtractBackground()
{
    struct Sample
    {
        Terms terms;
        std::array<double, 3> colour;
        double weight = 1;
    };
    std::vector<Sample> samples;
    const int step = std::max(1, int(std::sqrt(double(m_width) * m_height / mostSamples)));
    const double unit = 2.0 / std::max(m_width, m_height);
    std::vector<float> values;
    std::array<double, 3> start{};
    for (std::size_t channel = 0; channel < 3; ++channel) {
        values.clear();
        for (int y = step / 2; y < m_height; y += step) {
            for (int x = step / 2; x < m_width; x += step)
                values.push_back(m_channels[channel][place(x, y)]);
        }
        start[channel] = double(medianOf(values));
    }
    for (int y = step / 2; y < m_height; y += step) {
        for (int x = step / 2; x < m_width; x += step) {
            const Colour colour = at(x, y);
            samples.push_back(
                {termsAt(unit * x - 1, unit * y - 1), {double(colour[0]), double(colour[1]), double(colour[2])}, 1});
        }
    }
    std::array<Terms, 3> surface{};
    for (std::size_t channel = 0; channel < 3; ++channel)
        surface[channel][0] = start[channel];
    const auto valueAt = [](const Terms& coefficients, const Terms& at) {
        double sum = 0;
        for (std::size_t i = 0; i < terms; ++i)
            sum += coefficients[i] * at[i];
        return sum;
    };
    for (int round = 0; round < rounds; ++round) {
        values.clear();
        for (Sample& sample : samples) {
            double sum = 0;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                const double off = sample.colour[channel] - valueAt(surface[channel], sample.terms);
                sum += off * off / 3;
            }
            sample.weight = std::sqrt(sum); // the distance, for now
            values.push_back(float(sample.weight));
        }
        // What lies far off is ink. The bound shrinks from round to round as far as the median distance allows, so that
        // the surface can follow a gradient before it turns choosy.
        const double bound = std::max({6.0, 2.2 * double(medianOf(values)), 64.0 / (1 << round)});
        std::array<Terms, terms> normal{};
        std::array<Terms, 3> right{};
        for (const Sample& sample : samples) {
            const double share = sample.weight / bound;
            const double weight = share < 1 ? (1 - share * share) * (1 - share * share) : 0;
            for (std::size_t i = 0; i < terms; ++i) {
                for (std::size_t j = 0; j < terms; ++j)
                    normal[i][j] += weight * sample.terms[i] * sample.terms[j];
                for (std::size_t channel = 0; channel < 3; ++channel)
                    right[channel][i] += weight * sample.terms[i] * sample.colour[channel];
            }
        }
        for (std::size_t i = 0; i < terms; ++i)
            normal[i][i] += i == 0 ? 1e-6 : 1e-6 + 1e-3 * normal[0][0];
        surface = solved(normal, right);
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const Terms& c = surface[channel];
        for (int y = 0; y < m_height; ++y) {
            const double v = unit * y - 1;
            const auto constant = float(c[0] + c[2] * v + c[5] * v * v);
            const auto linear = float(c[1] + c[4] * v);
            const auto square = float(c[3]);
            float* line = &m_channels[channel][place(0, y)];
            for (int x = 0; x < m_width; ++x) {
                const float u = float(unit) * float(x) - 1;
                line[x] -= constant + u * (linear + u * square);
            }
        }
    }
}

float ColourPatch::noise() const
{
    std::vector<float> differences;
    const int step = std::max(1, int(std::sqrt(double(m_width) * m_height / mostSamples)));
    for (int y = 0; y + 1 < m_height; y += step) {
        for (int x = 0; x + 1 < m_width; x += step) {
            // Second differences: a gradient is not noise.
            const std::vector<float>& green = m_channels[1];
            differences.push_back(std::abs(green[place(x, y)] - green[place(x + 1, y)] - green[place(x, y + 1)] +
                                           green[place(x + 1, y + 1)]));
        }
    }
    return differences.empty() ? 0 : medianOf(differences) / (2 * 0.6745F);
}

Coverage ColourPatch::along(const Colour& ink) const
{
    Coverage result(m_width, m_height);
    const float square = ink[0] * ink[0] + ink[1] * ink[1] + ink[2] * ink[2];
    if (!(square > 0))
        return result;
    for (std::size_t i = 0; i < result.values.size(); ++i) {
        result.values[i] = (m_channels[0][i] * ink[0] + m_channels[1][i] * ink[1] + m_channels[2][i] * ink[2]) / square;
    }
    return result;
}

} // namespace kerval::letters
