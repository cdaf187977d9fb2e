#include "qtService/ui/details/KrvUpdateWhenVisibleFontDetailsWidget.h"

KrvUpdateWhenVisibleFontDetailsWidget::KrvUpdateWhenVisibleFontDetailsWidget(KrvAbstractFontDetailsWidget* inner,
                                                                             QWidget* parent)
    : KrvAbstractFontDetailsWidget(parent)
    , m_inner(inner)
{
    wrap(inner);
}

void KrvUpdateWhenVisibleFontDetailsWidget::setContext(const QSharedPointer<UserFontGroupList>& context)
{
    storeContext(context);
    if (isVisible())
        m_inner->setContext(context);
}

void KrvUpdateWhenVisibleFontDetailsWidget::setFont(const StaticFontPtr& font)
{
    storeFont(font);
    if (isVisible())
        m_inner->setFont(font);
}

void KrvUpdateWhenVisibleFontDetailsWidget::setFontCollection(const QSharedPointer<FontCollectionInterface>& collection)
{
    storeFontCollection(collection);
    if (isVisible())
        m_inner->setFontCollection(collection);
}

void KrvUpdateWhenVisibleFontDetailsWidget::showEvent(QShowEvent* event)
{
    KrvAbstractFontDetailsWidget::showEvent(event);
    updateView();
}

void KrvUpdateWhenVisibleFontDetailsWidget::updateView()
{
    m_inner->setContext(context());
    m_inner->setFontCollection(fontCollection());
    m_inner->setFont(font());
}
