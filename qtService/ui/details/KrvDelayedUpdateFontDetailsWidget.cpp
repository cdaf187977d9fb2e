#include "qtService/ui/details/KrvDelayedUpdateFontDetailsWidget.h"

KrvDelayedUpdateFontDetailsWidget::KrvDelayedUpdateFontDetailsWidget(KrvAbstractFontDetailsWidget* inner, int delayMs,
                                                                     QWidget* parent)
    : KrvAbstractFontDetailsWidget(parent)
    , m_inner(inner)
{
    wrap(inner);
    m_timer.setInterval(delayMs);
    connect(&m_timer, &QTimer::timeout, this, &KrvDelayedUpdateFontDetailsWidget::onDelayTimeout);
}

void KrvDelayedUpdateFontDetailsWidget::setContext(const QSharedPointer<UserFontGroupList>& context)
{
    storeContext(context);
    updateView();
}

void KrvDelayedUpdateFontDetailsWidget::setFont(const StaticFontPtr& font)
{
    storeFont(font);
    updateView();
}

void KrvDelayedUpdateFontDetailsWidget::setFontCollection(const QSharedPointer<FontCollectionInterface>& collection)
{
    storeFontCollection(collection);
    updateView();
}

void KrvDelayedUpdateFontDetailsWidget::updateView()
{
    m_timer.start();
}

void KrvDelayedUpdateFontDetailsWidget::onDelayTimeout()
{
    m_timer.stop();
    m_inner->setContext(context());
    m_inner->setFontCollection(fontCollection());
    m_inner->setFont(font());
}
