#include "bench/fontlens/PictureMaker.h"

#include <QBuffer>
#include <QColor>
#include <QFile>
#include <QTransform>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cmath>
#include <vector>

struct PictureMaker::Line
{
    int width = 0;
    int height = 0;
    std::vector<float> ink;
    QVector<SetPicture::Letter> letters;
};

double PictureMaker::between(double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(m_random);
}

bool PictureMaker::typeset(FT_Face face, const QString& text, int pixels, Line& line)
{
    const int hinting[] = {FT_LOAD_NO_HINTING, FT_LOAD_TARGET_LIGHT, FT_LOAD_DEFAULT};
    const int flags = hinting[m_random() % 3] | FT_LOAD_NO_BITMAP;
    FT_Select_Charmap(face, FT_ENCODING_UNICODE);
    if (FT_Set_Pixel_Sizes(face, 0, unsigned(pixels)) != 0)
        return false;
    line.width = pixels * (text.size() * 2 + 2);
    line.height = pixels * 4;
    std::vector<float> ink(std::size_t(line.width) * std::size_t(line.height), 0);
    std::vector<int> owner(ink.size(), -1);
    double pen = pixels;
    FT_UInt before = 0;
    for (int i = 0; i < text.size(); ++i) {
        const FT_UInt glyph = FT_Get_Char_Index(face, text[i].unicode());
        FT_Vector kerning{};
        if (before && FT_Get_Kerning(face, before, glyph, FT_KERNING_DEFAULT, &kerning) == 0)
            pen += double(kerning.x) / 64;
        before = glyph;
        if (FT_Load_Glyph(face, glyph, flags) != 0)
            return false;
        const double advance = double(face->glyph->advance.x) / 64;
        if (FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL) != 0 ||
            face->glyph->bitmap.pixel_mode != FT_PIXEL_MODE_GRAY)
            return false;
        const FT_Bitmap& bitmap = face->glyph->bitmap;
        const int left = int(std::lround(pen)) + face->glyph->bitmap_left;
        const int top = int(2.6 * pixels) - face->glyph->bitmap_top;
        for (int y = 0; y < int(bitmap.rows); ++y) {
            for (int x = 0; x < int(bitmap.width); ++x) {
                const float value = float(bitmap.buffer[y * bitmap.pitch + x]) / 255;
                if (value == 0 || left + x < 0 || left + x >= line.width || top + y < 0 || top + y >= line.height)
                    continue;
                const std::size_t at = std::size_t(top + y) * std::size_t(line.width) + std::size_t(left + x);
                owner[at] = value > ink[at] ? i : owner[at];
                ink[at] = std::min(1.0F, ink[at] + value);
            }
        }
        pen += advance;
    }
    // Cut down to the ink with half a line around it.
    int x0 = line.width, x1 = -1, y0 = line.height, y1 = -1;
    for (int i = 0; i < int(ink.size()); ++i) {
        if (ink[std::size_t(i)] > 0) {
            x0 = std::min(x0, i % line.width);
            x1 = std::max(x1, i % line.width);
            y0 = std::min(y0, i / line.width);
            y1 = std::max(y1, i / line.width);
        }
    }
    if (x1 < 0)
        return false;
    const int margin = pixels / 2;
    x0 = std::max(0, x0 - margin);
    y0 = std::max(0, y0 - margin);
    x1 = std::min(line.width - 1, x1 + margin);
    y1 = std::min(line.height - 1, y1 + margin);
    std::vector<std::vector<QPoint>> clicks(std::size_t(text.size()));
    const int stride = line.width;
    line.width = x1 - x0 + 1;
    line.height = y1 - y0 + 1;
    line.ink.resize(std::size_t(line.width) * std::size_t(line.height));
    for (int y = 0; y < line.height; ++y) {
        for (int x = 0; x < line.width; ++x) {
            const std::size_t from = std::size_t(y + y0) * std::size_t(stride) + std::size_t(x + x0);
            line.ink[std::size_t(y) * std::size_t(line.width) + std::size_t(x)] = ink[from];
            if (ink[from] > 0.7F && owner[from] >= 0)
                clicks[std::size_t(owner[from])].push_back({x, y});
        }
    }
    for (int i = 0; i < text.size(); ++i) {
        const auto& places = clicks[std::size_t(i)];
        if (!places.empty() && text[i] != QLatin1Char(' '))
            line.letters.append({text[i], places[m_random() % places.size()]});
    }
    return true;
}

QImage PictureMaker::coloured(const Line& line, bool plain)
{
    const auto any = [this] { return QColor::fromHsvF(between(0, 1), between(0.1, 0.9), between(0.15, 1)); };
    const auto grey = [](const QColor& colour) { return qGray(colour.rgb()); };
    QColor ink(Qt::black);
    QColor one(Qt::white);
    QColor other(Qt::white);
    while (!plain) {
        ink = any();
        one = any();
        other = m_random() % 2 ? one : any();
        if (std::abs(grey(ink) - grey(one)) > 90 && std::abs(grey(ink) - grey(other)) > 90 &&
            (grey(ink) < grey(one)) == (grey(ink) < grey(other)))
            break;
    }
    const double turn = between(0, 6.28);
    QImage image(line.width, line.height, QImage::Format_RGB32);
    for (int y = 0; y < line.height; ++y) {
        auto* out = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < line.width; ++x) {
            const double along = std::cos(turn) * (double(x) / line.width - 0.5) +
                                 std::sin(turn) * (double(y) / line.height - 0.5) + 0.5;
            const double t = std::clamp(along, 0.0, 1.0);
            const double a = double(line.ink[std::size_t(y) * std::size_t(line.width) + std::size_t(x)]);
            const auto mix = [&](int i, int p, int q) { return int(a * i + (1 - a) * ((1 - t) * p + t * q) + 0.5); };
            out[x] = qRgb(mix(ink.red(), one.red(), other.red()), mix(ink.green(), one.green(), other.green()),
                          mix(ink.blue(), one.blue(), other.blue()));
        }
    }
    return image;
}

void PictureMaker::blur(QImage& image, double sigma)
{
    const int radius = int(std::ceil(3 * sigma));
    std::vector<double> kernel;
    double total = 0;
    for (int i = -radius; i <= radius; ++i) {
        kernel.push_back(std::exp(-0.5 * i * i / (sigma * sigma)));
        total += kernel.back();
    }
    for (const bool across : {true, false}) {
        const QImage from = image;
        for (int y = 0; y < image.height(); ++y) {
            auto* out = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                double r = 0, g = 0, b = 0;
                for (int i = -radius; i <= radius; ++i) {
                    const int px = std::clamp(across ? x + i : x, 0, image.width() - 1);
                    const int py = std::clamp(across ? y : y + i, 0, image.height() - 1);
                    const QRgb colour = reinterpret_cast<const QRgb*>(from.constScanLine(py))[px];
                    const double weight = kernel[std::size_t(i + radius)] / total;
                    r += weight * qRed(colour);
                    g += weight * qGreen(colour);
                    b += weight * qBlue(colour);
                }
                out[x] = qRgb(int(r + 0.5), int(g + 0.5), int(b + 0.5));
            }
        }
    }
}

void PictureMaker::addNoise(QImage& image, double deviation)
{
    std::normal_distribution<double> noise(0, deviation);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const auto spoiled = [&](int value) { return std::clamp(int(value + noise(m_random)), 0, 255); };
            line[x] = qRgb(spoiled(qRed(line[x])), spoiled(qGreen(line[x])), spoiled(qBlue(line[x])));
        }
    }
}

SetPicture PictureMaker::set(const QString& file, int faceIndex, const QString& text, int pixels, Spoiling spoiling)
{
    SetPicture result;
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_Init_FreeType(&library);
    Line line;
    const bool made = FT_New_Face(library, QFile::encodeName(file).constData(), faceIndex, &face) == 0 &&
                      typeset(face, text, pixels, line);
    FT_Done_FreeType(library);
    if (!made)
        return result;

    int chosen = spoiling == Clean ? 0 : 1 << spoiling;
    while (spoiling == Everything && (chosen == 1 << Everything || (chosen & (chosen - 1)) == 0))
        chosen = int(m_random() % 32) << 1;
    const auto has = [chosen](Spoiling one) { return (chosen & (1 << one)) != 0; };
    result.image = coloured(line, !has(Coloured));
    result.letters = line.letters;
    if (has(Turned)) {
        const int degrees = int(m_random() % 21) - 10;
        const QColor ground = result.image.pixelColor(0, 0);
        QTransform transform;
        transform.rotate(-degrees + between(-1.5, 1.5));
        const QTransform real = QImage::trueMatrix(transform, result.image.width(), result.image.height());
        QImage canvas =
            result.image.convertToFormat(QImage::Format_ARGB32).transformed(transform, Qt::SmoothTransformation);
        QImage filled(canvas.size(), QImage::Format_RGB32);
        for (int y = 0; y < canvas.height(); ++y) {
            const auto* from = reinterpret_cast<const QRgb*>(canvas.constScanLine(y));
            auto* to = reinterpret_cast<QRgb*>(filled.scanLine(y));
            for (int x = 0; x < canvas.width(); ++x) {
                const int a = qAlpha(from[x]);
                const auto over = [a](int value, int back) { return (value * a + back * (255 - a)) / 255; };
                to[x] = qRgb(over(qRed(from[x]), ground.red()), over(qGreen(from[x]), ground.green()),
                             over(qBlue(from[x]), ground.blue()));
            }
        }
        result.image = filled;
        result.angle = degrees;
        for (SetPicture::Letter& letter : result.letters)
            letter.click = real.map(QPointF(letter.click) + QPointF(0.5, 0.5)).toPoint();
    }
    if (has(Blurred))
        blur(result.image, between(0.5, 0.5 + pixels / 60.0));
    if (has(Noisy))
        addNoise(result.image, between(4, 20));
    if (has(Compressed)) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        result.image.save(&buffer, "JPG", int(between(30, 75)));
        result.image.loadFromData(bytes, "JPG");
    }
    return result;
}
