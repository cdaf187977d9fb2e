#pragma once

#include "qtService/ui/details/KrvAbstractFontDetailsWidget.h"

class QTableWidget;

// What the catalogue holds of a font, row by row. It follows changes of the font that the shown collection announces
// and changes of the user's groups.
class KrvFontDetailsTableWidget : public KrvAbstractFontDetailsWidget
{
    Q_OBJECT

public:
    explicit KrvFontDetailsTableWidget(QWidget* parent = nullptr);

    void setContext(const QSharedPointer<UserFontGroupList>& context) override;
    void setFontCollection(const QSharedPointer<FontCollectionInterface>& collection) override;

protected:
    void changeEvent(QEvent* event) override;

protected slots:
    void updateView() override;

private slots:
    void openLocation(QString location);
    void copySelectionText();
    void showContextMenu(QPoint pos);
    void onFontsChanged(QList<int> fontIdList);

private:
    void setupUi();
    void paleSelection();
    void setText(int row, const QString& text);
    void setLink(int row, const QString& target, const QString& text);
    QString groupNames() const;

    QTableWidget* m_table;
};
