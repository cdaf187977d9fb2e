#include "qtService/ui/dialogs/FontAdderStatusWidget.h"

#include "qtService/management/FontAdder.h"
#include "qtService/ui/dialogs/AdderStatus.h"
#include "qtService/ui/widgets/ApplicationProgressIndicator.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

FontAdderStatusWidget::FontAdderStatusWidget(const QSharedPointer<FontAdder>& adder, QWidget* parent)
    : QWidget(parent)
    , m_adder(adder)
    , m_taskbar(std::make_unique<ApplicationProgressIndicator>(parent ? parent->window() : this))
{
    setObjectName(QStringLiteral("FontAdderStatusWidget"));
    setWindowTitle(tr("Form"));
    m_status = new QLabel(tr("Font Scanner paused"), this);
    m_status->setObjectName(QStringLiteral("lblStatus"));
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("progressBar"));
    m_bar->setMaximumHeight(16);
    m_bar->setAccessibleName(tr("Font Scanner"));
    m_resume = new QPushButton(tr("Resume"), this);
    m_resume->setObjectName(QStringLiteral("btnResume"));
    m_abort = new QPushButton(tr("Abort"), this);
    m_abort->setObjectName(QStringLiteral("btnAbort"));
    auto* layout = new QHBoxLayout(this);
    layout->setObjectName(QStringLiteral("horizontalLayout"));
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addWidget(m_status);
    layout->addWidget(m_bar, 1);
    layout->addWidget(m_resume);
    layout->addWidget(m_abort);
    connect(m_resume, &QPushButton::clicked, this,
            [this] { m_adder->isPaused() ? m_adder->startAdding() : m_adder->pauseAdding(); });
    connect(m_abort, &QPushButton::clicked, m_adder.data(), &FontAdder::stopAdding);
    for (const auto signal :
         {&FontAdder::stateChanged, &FontAdder::numberOfFontsChanged, &FontAdder::numberOfAddedFontsChanged})
        connect(m_adder.data(), signal, this, &FontAdderStatusWidget::onFontAdderStatusChanged);
    onFontAdderStatusChanged();
}

FontAdderStatusWidget::~FontAdderStatusWidget()
{
    m_taskbar->setVisible(false);
}

void FontAdderStatusWidget::onFontAdderStatusChanged()
{
    const bool paused = m_adder->isPaused();
    m_status->setText(paused ? tr("Font Scanner paused") : ui::adderStatusText(*m_adder));
    ui::showAdderProgress(m_bar, *m_adder);
    const bool settled = !m_adder->isPausing() && !m_adder->isStopping();
    m_resume->setText(paused ? tr("Resume") : tr("Pause"));
    m_resume->setEnabled(m_adder->isAdding() && settled);
    m_abort->setEnabled(m_adder->isAdding() && settled);
    setVisible(m_adder->isAdding() || m_adder->isSearching());
    // While it comes to a stop the bar turns without a value; the taskbar keeps the last one.
    if (settled) {
        m_taskbar->setRange(m_bar->minimum(), m_bar->maximum());
        m_taskbar->setValue(m_bar->value());
    }
    m_taskbar->setPaused(paused);
    m_taskbar->setVisible(m_adder->isAdding());
}
