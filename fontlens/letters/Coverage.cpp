#include "fontlens/letters/Coverage.h"

#include <algorithm>
#include <cmath>

namespace kerval::letters {

namespace {

// The shares with which `from` numbers contribute to each of `to` averages.
void averageLine(const float* from, int fromCount, std::ptrdiff_t fromStep, float* to, int toCount,
                 std::ptrdiff_t toStep)
{
    const double each = double(fromCount) / toCount;
    for (int i = 0; i < toCount; ++i) {
        const double begin = i * each;
        const double end = begin + each;
        double sum = 0;
        for (int k = int(begin); k < fromCount && k < end; ++k) {
            const double share = std::min<double>(k + 1, end) - std::max<double>(k, begin);
            sum += share * double(from[k * fromStep]);
        }
        to[i * toStep] = float(sum / each);
    }
}

float cubic(float before, float at, float after, float beyond, float t)
{
    return at + 0.5F * t *
                    (after - before +
                     t * (2 * before - 5 * at + 4 * after - beyond + t * (3 * (at - after) + beyond - before)));
}

} // namespace

Coverage Coverage::fromImage(const QImage& image)
{
    QImage opaque = image;
    if (image.hasAlphaChannel()) {
        opaque = image.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < opaque.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(opaque.scanLine(y));
            for (int x = 0; x < opaque.width(); ++x) {
                const int white = 255 - qAlpha(line[x]);
                const auto over = [&](int channel) { return channel * qAlpha(line[x]) / 255 + white; };
                line[x] = qRgb(over(qRed(line[x])), over(qGreen(line[x])), over(qBlue(line[x])));
            }
        }
    }
    const QImage grey = opaque.convertToFormat(QImage::Format_Grayscale8);
    Coverage result(grey.width(), grey.height());
    for (int y = 0; y < result.height; ++y) {
        const uchar* line = grey.constScanLine(y);
        std::transform(line, line + result.width, result.row(y), [](uchar value) { return float(255 - value) / 255; });
    }
    return result;
}

QImage Coverage::toImage() const
{
    QImage image(width, height, QImage::Format_Grayscale8);
    for (int y = 0; y < height && !image.isNull(); ++y) {
        std::transform(row(y), row(y) + width, image.scanLine(y),
                       [](float ink) { return uchar(std::lround(255 * (1 - std::clamp(ink, 0.0F, 1.0F)))); });
    }
    return image;
}

Coverage Coverage::reduced(double factor) const
{
    const int columns = std::max(1, int(std::lround(width * factor)));
    const int rows = std::max(1, int(std::lround(height * factor)));
    if (isEmpty() || (columns >= width && rows >= height))
        return *this;
    Coverage narrow(columns, height);
    for (int y = 0; y < height; ++y)
        averageLine(row(y), width, 1, narrow.row(y), columns, 1);
    Coverage result(columns, rows);
    for (int x = 0; x < columns; ++x)
        averageLine(narrow.values.data() + x, height, columns, result.values.data() + x, rows, columns);
    return result;
}

Coverage Coverage::withMargin(int margin) const
{
    Coverage result(std::max(0, width + 2 * margin), std::max(0, height + 2 * margin));
    for (int y = std::max(0, -margin); y < std::min(height, height + margin); ++y) {
        const int skip = std::max(0, -margin);
        if (width > 2 * skip)
            std::copy(row(y) + skip, row(y) + width - skip, result.row(y + margin) + std::max(0, margin));
    }
    return result;
}

Coverage Coverage::cropped(float level, QPoint* corner) const
{
    int left = width, right = -1, top = height, bottom = -1;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            if (row(y)[x] >= level) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = y;
            }
        }
    }
    if (right < 0)
        return {};
    if (corner)
        *corner = QPoint(left, top);
    Coverage result(right - left + 1, bottom - top + 1);
    for (int y = 0; y < result.height; ++y)
        std::copy_n(row(y + top) + left, result.width, result.row(y));
    return result;
}

Coverage Coverage::turned(double degrees) const
{
    const double radians = degrees * std::acos(-1.0) / 180;
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    Coverage result(int(std::ceil(std::abs(c) * width + std::abs(s) * height)) + 2,
                    int(std::ceil(std::abs(s) * width + std::abs(c) * height)) + 2);
    const auto valueAt = [this](int x, int y) {
        return x >= 0 && y >= 0 && x < width && y < height ? row(y)[x] : 0.0F;
    };
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            const double offX = x + 0.5 - 0.5 * result.width;
            const double offY = y + 0.5 - 0.5 * result.height;
            const double fromX = c * offX + s * offY + 0.5 * width - 0.5;
            const double fromY = -s * offX + c * offY + 0.5 * height - 0.5;
            const int cellX = int(std::floor(fromX));
            const int cellY = int(std::floor(fromY));
            if (cellX < -2 || cellY < -2 || cellX > width || cellY > height)
                continue;
            float lines[4];
            for (int i = 0; i < 4; ++i) {
                const int line = cellY - 1 + i;
                lines[i] = cubic(valueAt(cellX - 1, line), valueAt(cellX, line), valueAt(cellX + 1, line),
                                 valueAt(cellX + 2, line), float(fromX - cellX));
            }
            result.row(y)[x] =
                std::clamp(cubic(lines[0], lines[1], lines[2], lines[3], float(fromY - cellY)), 0.0F, 1.0F);
        }
    }
    return result;
}

void Coverage::blur(double sigma)
{
    if (sigma < 0.2 || isEmpty())
        return;
    const int radius = std::max(1, int(std::ceil(2.6 * sigma)));
    std::vector<float> kernel(std::size_t(radius) + 1);
    float sum = 0;
    for (int i = 0; i <= radius; ++i) {
        kernel[std::size_t(i)] = float(std::exp(-0.5 * i * i / (sigma * sigma)));
        sum += kernel[std::size_t(i)] * (i == 0 ? 1.0F : 2.0F);
    }
    for (float& weight : kernel)
        weight /= sum;

    std::vector<float> line(std::size_t(width + 2 * radius));
    for (int y = 0; y < height; ++y) {
        float* values = row(y);
        std::copy_n(values, width, line.data() + radius);
        const float* middle = line.data() + radius;
        for (int x = 0; x < width; ++x)
            values[x] = kernel[0] * middle[x];
        for (int i = 1; i <= radius; ++i) {
            const float weight = kernel[std::size_t(i)];
            for (int x = 0; x < width; ++x)
                values[x] += weight * (middle[x - i] + middle[x + i]);
        }
    }
    const Coverage across = *this;
    for (int y = 0; y < height; ++y) {
        float* values = row(y);
        std::fill_n(values, width, 0.0F);
        for (int i = -radius; i <= radius; ++i) {
            if (y + i < 0 || y + i >= height)
                continue;
            const float weight = kernel[std::size_t(std::abs(i))];
            const float* other = across.row(y + i);
            for (int x = 0; x < width; ++x)
                values[x] += weight * other[x];
        }
    }
}

int Coverage::parts(double share) const
{
    std::vector<char> seen(values.size());
    std::vector<int> areas;
    std::vector<int> open;
    for (int start = 0; start < int(values.size()); ++start) {
        if (seen[std::size_t(start)] || values[std::size_t(start)] < 0.5F)
            continue;
        int area = 0;
        seen[std::size_t(start)] = 1;
        open.assign(1, start);
        while (!open.empty()) {
            const int at = open.back();
            open.pop_back();
            ++area;
            const int x = at % width;
            const int y = at / width;
            for (int ny = std::max(0, y - 1); ny <= std::min(height - 1, y + 1); ++ny) {
                for (int nx = std::max(0, x - 1); nx <= std::min(width - 1, x + 1); ++nx) {
                    const int next = ny * width + nx;
                    if (!seen[std::size_t(next)] && values[std::size_t(next)] >= 0.5F) {
                        seen[std::size_t(next)] = 1;
                        open.push_back(next);
                    }
                }
            }
        }
        areas.push_back(area);
    }
    if (areas.empty())
        return 0;
    const double smallest = share * *std::max_element(areas.begin(), areas.end());
    return int(std::count_if(areas.begin(), areas.end(), [smallest](int area) { return area >= smallest; }));
}

} // namespace kerval::letters
