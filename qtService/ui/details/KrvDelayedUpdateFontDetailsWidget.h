#pragma once

#include "qtService/ui/details/KrvAbstractFontDetailsWidget.h"

#include <QTimer>

// Tells the widget it wraps of new values once they have rested for a while, all three at once.
class KrvDelayedUpdateFontDetailsWidget : public KrvAbstractFontDetailsWidget
{
    Q_OBJECT

public:
    // Takes the inner widget over.
    KrvDelayedUpdateFontDetailsWidget(KrvAbstractFontDetailsWidget* inner, int delayMs, QWidget* parent = nullptr);

    void setContext(const QSharedPointer<UserFontGroupList>& context) override;
    void setFont(const StaticFontPtr& font) override;
    void setFontCollection(const QSharedPointer<FontCollectionInterface>& collection) override;

protected slots:
    void updateView() override;

private slots:
    void onDelayTimeout();

private:
    KrvAbstractFontDetailsWidget* m_inner;
    QTimer m_timer;
};
