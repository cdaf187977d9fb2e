#pragma once

#include <QImage>
#include <QPoint>
#include <QString>
#include <QVector>

#include <random>

struct FT_FaceRec_;
typedef struct FT_FaceRec_* FT_Face;

// A word as a picture, and where its letters can be clicked.
struct SetPicture
{
    struct Letter
    {
        QChar character;
        QPoint click; // in ink of this letter alone, anywhere in it
    };
    QImage image;
    QVector<Letter> letters;
    int angle = 0; // to which a user would turn the view, two degrees off at most
};

// Sets words by FreeType, whatever Kerval draws with, in its three ways of hinting, and spoils the picture when asked:
// colours, gradients, blur, noise, JPEG, a turn of up to ten degrees.
class PictureMaker
{
public:
    enum Spoiling
    {
        Clean,
        Blurred,
        Noisy,
        Compressed,
        Coloured,
        Turned,
        Everything // any of them with even odds, at least two
    };

    explicit PictureMaker(unsigned seed)
        : m_random(seed)
    {
    }

    SetPicture set(const QString& file, int faceIndex, const QString& text, int pixels, Spoiling spoiling);
    std::mt19937& random() { return m_random; }
    double between(double low, double high);

private:
    struct Line;
    bool typeset(FT_Face face, const QString& text, int pixels, Line& line);
    QImage coloured(const Line& line, bool plain);
    void blur(QImage& image, double sigma);
    void addNoise(QImage& image, double deviation);

    std::mt19937 m_random;
};
