#include "qtService/ui/dialogs/FontAdderDialog.h"

#include "qtService/app/core/FMSLog.h"
#include "qtService/management/FontAdder.h"
#include "qtService/ui/dialogs/AdderStatus.h"
#include "qtService/ui/messages/FMSPlainTextMessage.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

FontAdderDialog::FontAdderDialog(const QSharedPointer<FontAdder>& adder, const KrvFontRepositoryPtr& repository,
                                 QWidget* parent)
    : QDialog(parent)
    , m_adder(adder)
    , m_repository(repository)
    , m_warningsWindow(new FMSPlainTextMessage)
{
    m_warningsWindow->setWindowTitle(tr("Scanner Warnings"));
    if (parent)
        connect(parent, &QObject::destroyed, m_warningsWindow.data(),
                [window = m_warningsWindow.data()] { delete window; });
    setupUi();
    setWindowModality(Qt::WindowModal);
    for (const auto signal :
         {&FontAdder::stateChanged, &FontAdder::numberOfFontsChanged, &FontAdder::numberOfAddedFontsChanged}) {
        connect(m_adder.data(), signal, this, &FontAdderDialog::updateStatusText);
        connect(m_adder.data(), signal, this, &FontAdderDialog::updateProgressBar);
        connect(m_adder.data(), signal, this, &FontAdderDialog::updateButtons);
    }
    connect(m_adder.data(), &FontAdder::failedFontFilesChanged, this, &FontAdderDialog::updateButtons);
    connect(m_adder.data(), &FontAdder::fontFileSearchStarted, this, &FontAdderDialog::onFontFileSearchStarted);
    connect(m_adder.data(), &FontAdder::fontFileSearchFinished, this, &FontAdderDialog::onFontFileSearchFinished);
    connect(m_repository.data(), &FontCollectionInterface::fontCountChanged, this, &FontAdderDialog::updateStatusText);
    connect(m_stopSearch, &QPushButton::clicked, m_adder.data(), &FontAdder::abortSearchForFontFiles);
    connect(m_startPause, &QPushButton::clicked, this, &FontAdderDialog::toggleAdding);
    connect(m_abort, &QPushButton::clicked, m_adder.data(), &FontAdder::stopAdding);
    connect(m_warnings, &QPushButton::clicked, this, &FontAdderDialog::showWarnings);
    connect(m_log, &QPushButton::clicked, this, &FontAdderDialog::scanLogRequested);
    updateStatusText();
    updateProgressBar();
    updateButtons();
}

FontAdderDialog::~FontAdderDialog()
{
    // The dialog goes by itself when the run ends, while the user may just be reading what went wrong.
    if (m_warningsWindow && m_warningsWindow->isVisible() && parentWidget())
        m_warningsWindow->setAttribute(Qt::WA_DeleteOnClose);
    else
        delete m_warningsWindow.data();
}

void FontAdderDialog::setupUi()
{
    setObjectName(QStringLiteral("FontAdderDialog"));
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("lblDatabaseFontCount"));
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("lblStatus"));
    m_status->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("progressBar"));
    m_bar->setAccessibleName(tr("Status"));
    const auto button = [this](const char* name, const QString& text) {
        auto* widget = new QPushButton(text, this);
        widget->setObjectName(QLatin1String(name));
        // The dialog comes up by itself; what the user is just typing must not stop the scan.
        widget->setAutoDefault(false);
        return widget;
    };
    m_warnings = button("btnWarnings", tr("Warnings"));
    m_stopSearch = button("btnAbortFontFileSearch", tr("Stop Scanning"));
    m_log = button("btnShowLog", tr("Log"));
    m_startPause = button("btnStartPause", tr("Pause"));
    m_abort = button("btnAbort", tr("Abort"));

    auto* labels = new QHBoxLayout;
    labels->setObjectName(QStringLiteral("horizontalLayout"));
    labels->addWidget(m_count);
    labels->addStretch();
    labels->addWidget(m_status);
    auto* buttons = new QHBoxLayout;
    buttons->setObjectName(QStringLiteral("horizontalLayout_2"));
    buttons->addWidget(m_warnings);
    buttons->addWidget(m_log);
    buttons->addStretch();
    buttons->addWidget(m_stopSearch);
    buttons->addWidget(m_startPause);
    buttons->addWidget(m_abort);
    // The dialog does not grow when a search begins.
    QSizePolicy policy = m_stopSearch->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_stopSearch->setSizePolicy(policy);
    auto* layout = new QVBoxLayout(this);
    layout->setObjectName(QStringLiteral("verticalLayout"));
    layout->addLayout(labels);
    layout->addWidget(m_bar);
    layout->addLayout(buttons);
    // Not of the window: it has to grow with longer texts.
    m_bar->setMinimumWidth(540);
    m_log->setFocus();
}

int FontAdderDialog::exec()
{
    updateStatusText();
    updateProgressBar();
    updateButtons();
    return QDialog::exec();
}

void FontAdderDialog::onFontFileSearchStarted()
{
    updateStatusText();
    updateButtons();
}

void FontAdderDialog::onFontFileSearchFinished()
{
    updateStatusText();
    updateButtons();
}

void FontAdderDialog::toggleAdding()
{
    if (m_adder->isPaused())
        m_adder->startAdding();
    else
        m_adder->pauseAdding();
}

void FontAdderDialog::showWarnings()
{
    ui::showAdderWarnings(m_warningsWindow, *m_adder);
}

void FontAdderDialog::updateProgressBar()
{
    ui::showAdderProgress(m_bar, *m_adder);
}

void FontAdderDialog::updateButtons()
{
    const bool settled = !m_adder->isPausing() && !m_adder->isStopping() && !m_adder->isSearching();
    const int failed = m_adder->failedFontFiles().size();
    m_warnings->setEnabled(failed > 0);
    m_warnings->setText(failed > 0 ? ui::warningsText(failed) : tr("Warnings"));
    m_stopSearch->setVisible(m_adder->isSearching());
    m_startPause->setText(m_adder->isPaused() ? tr("Resume") : tr("Pause"));
    m_startPause->setEnabled(m_adder->isAdding() && settled);
    m_abort->setEnabled(m_adder->isAdding() && settled);
}

void FontAdderDialog::updateStatusText()
{
    const QString status = ui::adderStatusText(*m_adder);
    m_status->setText(status.isEmpty() ? ui::lastScanText() : status);
    m_count->setText(tr("Number of fonts in Library") + QStringLiteral(": %1").arg(m_repository->fontCount()));
}
