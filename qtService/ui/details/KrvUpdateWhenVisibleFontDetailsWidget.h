#pragma once

#include "qtService/ui/details/KrvAbstractFontDetailsWidget.h"

// Tells the widget it wraps of new values at once while it can be seen, otherwise when it is next shown.
class KrvUpdateWhenVisibleFontDetailsWidget : public KrvAbstractFontDetailsWidget
{
    Q_OBJECT

public:
    // Takes the inner widget over.
    explicit KrvUpdateWhenVisibleFontDetailsWidget(KrvAbstractFontDetailsWidget* inner, QWidget* parent = nullptr);

    void setContext(const QSharedPointer<UserFontGroupList>& context) override;
    void setFont(const StaticFontPtr& font) override;
    void setFontCollection(const QSharedPointer<FontCollectionInterface>& collection) override;

protected:
    void showEvent(QShowEvent* event) override;

protected slots:
    void updateView() override;

private:
    KrvAbstractFontDetailsWidget* m_inner;
};
