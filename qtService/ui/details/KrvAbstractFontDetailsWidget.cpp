#include "qtService/ui/details/KrvAbstractFontDetailsWidget.h"

#include <QVBoxLayout>

KrvAbstractFontDetailsWidget::KrvAbstractFontDetailsWidget(QWidget* parent)
    : QWidget(parent)
{
}

KrvAbstractFontDetailsWidget::~KrvAbstractFontDetailsWidget() = default;

void KrvAbstractFontDetailsWidget::setContext(const QSharedPointer<UserFontGroupList>& context)
{
    if (m_context == context)
        return;
    m_context = context;
    updateView();
}

void KrvAbstractFontDetailsWidget::setFont(const StaticFontPtr& font)
{
    if (m_font == font)
        return;
    m_font = font;
    updateView();
}

void KrvAbstractFontDetailsWidget::setFontCollection(const QSharedPointer<FontCollectionInterface>& collection)
{
    m_collection = collection;
}

void KrvAbstractFontDetailsWidget::wrap(QWidget* inner)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(inner);
    setFocusProxy(inner);
}
