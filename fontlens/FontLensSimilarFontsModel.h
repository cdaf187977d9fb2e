#pragma once

#include "fontlens/recognition/FontData.h"

#include <QAbstractItemModel>
#include <QColor>
#include <QImage>
#include <QSharedPointer>

namespace FontRecognizer {
class FontRecognizerSession;
}

// The fonts that the service proposes, the best first, each with a preview of the letters looked for. Previews are
// asked for when the fonts arrive and fill in as they come; until then, and where none comes, a row keeps a transparent
// placeholder of the same size. Pictures of black on white are shown in the colour of the list's text, so that they
// read on every palette; others are laid on white.
class FontLensSimilarFontsModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column
    {
        PreviewColumn,
        NameColumn,
        StyleColumn,
        FoundryColumn,
        ColumnCount
    };
    static constexpr int FontIdRole = Qt::UserRole;

    explicit FontLensSimilarFontsModel(QObject* parent = nullptr);

    // Fonts of another session go. Null: none.
    void setSession(const QSharedPointer<FontRecognizer::FontRecognizerSession>& session);
    void setFonts(const QList<FontRecognizer::FontDataPtr>& fonts);
    // Null for an index that is none.
    FontRecognizer::FontDataPtr font(const QModelIndex& index) const;

    // The size of a preview cell's picture in logical pixels.
    static QSize previewSize();
    // The colour of the text, and the pixels for each logical one of the screen that shows it.
    void setAppearance(const QColor& ink, qreal devicePixelRatio);

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private slots:
    void onPreviewRendered(bool success, int fontId, QImage previewImage);

private:
    QImage cellOf(const QImage& rendered) const;

    QSharedPointer<FontRecognizer::FontRecognizerSession> m_session;
    QList<FontRecognizer::FontDataPtr> m_fonts;
    QVector<QImage> m_rendered; // one for each font, null until it comes
    QVector<QImage> m_cells;    // the same as shown
    QColor m_ink = Qt::black;
    qreal m_ratio = 1;
    qreal m_renderedRatio = 1; // of the screen that the previews were asked for
};
