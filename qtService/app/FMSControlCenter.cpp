#include "qtService/app/FMSControlCenter.h"

#include "qtService/app/core/FMSLog.h"
#include "qtService/app/core/Version.h"
#include "qtService/app/core/platform_folders.h"
#include "qtService/management/FontAdder.h"
#include "qtService/ui/dialogs/AdderStatus.h"
#include "qtService/ui/messages/FMSPlainTextMessage.h"

#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>

FMSControlCenter::FMSControlCenter(const QSharedPointer<FontAdder>& adder, const KrvFontRepositoryPtr& repository)
    : m_adder(adder)
    , m_repository(repository)
    , m_warningsWindow(std::make_unique<FMSPlainTextMessage>())
{
    setupUi();
    m_warningsWindow->setWindowTitle(tr("Scanner Warnings", "Title of window that displays scan-related warnings"));
    const FontAdder* scanner = m_adder.data();
    connect(scanner, &FontAdder::fontFileSearchStarted, this, &FMSControlCenter::onFontFileSearchStarted);
    connect(scanner, &FontAdder::fontFileSearchFinished, this, &FMSControlCenter::onFontFileSearchFinished);
    for (const auto signal :
         {&FontAdder::numberOfFontsChanged, &FontAdder::numberOfAddedFontsChanged, &FontAdder::stateChanged}) {
        connect(scanner, signal, this, &FMSControlCenter::updateStatusText);
        connect(scanner, signal, this, &FMSControlCenter::updateProgressBar);
        connect(scanner, signal, this, &FMSControlCenter::updateButtons);
    }
    connect(scanner, &FontAdder::failedFontFilesChanged, this, &FMSControlCenter::updateButtons);
    connect(m_repository.data(), &FontCollectionInterface::fontCountChanged, this, &FMSControlCenter::updateStatusText);
    connect(m_resume, &QPushButton::clicked, this, &FMSControlCenter::toggleAdderState);
    connect(m_abort, &QPushButton::clicked, this, &FMSControlCenter::abortAdder);
    connect(m_scan, &QPushButton::clicked, this, &FMSControlCenter::rescanRequested);
    connect(m_log, &QPushButton::clicked, this, &FMSControlCenter::scanLogRequested);
    connect(m_errors, &QPushButton::clicked, this, &FMSControlCenter::showErrors);
    connect(m_stopScanning, &QPushButton::clicked, scanner, &FontAdder::abortSearchForFontFiles);

    connect(new QShortcut(QKeySequence::Cancel, this), &QShortcut::activated, this, &QWidget::close);

    m_stopScanning->setVisible(m_adder->isSearching());
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint |
                   Qt::CustomizeWindowHint);
    setStyleSheet(QStringLiteral("font-size: 9pt"));
    setWindowIcon(QIcon(QStringLiteral(":/icon1.png")));
    QString title =
        tr("Kerval Control Center", "Title of Control Center window") + QStringLiteral(" - ") + krv::versionString();
    if (krv::platform::isAdministrator())
        title = tr("Administrator", "On Windows this text is prepended to control center's title if program is started "
                                    "under Admin privileges") +
                QStringLiteral(": ") + title;
    setWindowTitle(title);
    updateStatusText();
    updateButtons();
    updateProgressBar();
}

FMSControlCenter::~FMSControlCenter() = default;

void FMSControlCenter::setupUi()
{
    setObjectName(QStringLiteral("FMSControlCenter"));
    auto* logo = new QWidget(this);
    logo->setObjectName(QStringLiteral("wLogo"));
    logo->setStyleSheet(QStringLiteral("image: url(:/icon1.png)"));
    logo->setFixedSize(64, 64);
    auto* caption = new QLabel(tr("Font Scanner"), this);
    QFont font = caption->font();
    font.setBold(true);
    caption->setFont(font);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("la_status"));
    m_fontCount = new QLabel(this);
    m_fontCount->setObjectName(QStringLiteral("la_dbfontcount"));
    m_bar = new QProgressBar(this);
    m_bar->setObjectName(QStringLiteral("pb_progress"));
    m_bar->setFormat(QStringLiteral("%p%"));
    m_bar->setAccessibleName(tr("Font Scanner"));
    const auto button = [this](const char* name, const QString& text) {
        auto* widget = new QPushButton(text, this);
        widget->setObjectName(QLatin1String(name));
        return widget;
    };
    m_scan = button("btn_scan", tr("Scan"));
    m_resume = button("btn_resume", tr("Pause", "button title"));
    m_log = button("btn_showLog", tr("Log"));
    m_errors = button("btn_errors", QString());
    m_abort = button("btn_abort", tr("Abort"));
    m_stopScanning = button("btn_cancelAdding", tr("Stop Scanning"));

    // With a style sheet the style no longer says how far apart buttons stand.
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    for (QPushButton* widget : {m_errors, m_log})
        buttons->addWidget(widget);
    buttons->addStretch();
    for (QPushButton* widget : {m_stopScanning, m_resume, m_abort, m_scan})
        buttons->addWidget(widget);
    // The window does not grow when a search begins.
    QSizePolicy policy = m_stopScanning->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_stopScanning->setSizePolicy(policy);
    auto* layout = new QGridLayout(this);
    layout->setHorizontalSpacing(16);
    layout->addWidget(logo, 0, 0, 3, 1, Qt::AlignTop);
    layout->addWidget(caption, 0, 1);
    layout->addWidget(m_fontCount, 0, 2, Qt::AlignRight);
    layout->addWidget(m_status, 1, 1, 1, 2);
    layout->addWidget(m_bar, 2, 1, 1, 2);
    layout->addLayout(buttons, 3, 0, 1, 3);
    layout->setColumnStretch(1, 1);
    m_bar->setMinimumWidth(420);
}

void FMSControlCenter::showAndRaise()
{
    updateStatusText();
    updateButtons();
    updateProgressBar();
    showNormal();
    raise();
    activateWindow();
}

void FMSControlCenter::toggleAdderState()
{
    if (m_adder->isPaused())
        m_adder->startAdding();
    else
        m_adder->pauseAdding();
}

void FMSControlCenter::abortAdder()
{
    m_adder->stopAdding();
}

void FMSControlCenter::showErrors()
{
    ui::showAdderWarnings(m_warningsWindow.get(), *m_adder);
}

void FMSControlCenter::onFontFileSearchStarted()
{
    m_stopScanning->show();
    updateStatusText();
    updateButtons();
}

void FMSControlCenter::onFontFileSearchFinished()
{
    m_stopScanning->hide();
    updateStatusText();
    updateButtons();
}

void FMSControlCenter::updateProgressBar()
{
    ui::showAdderProgress(m_bar, *m_adder);
}

void FMSControlCenter::updateStatusText()
{
    const QString status = ui::adderStatusText(*m_adder);
    m_status->setText(status.isEmpty() ? ui::lastScanText() : status);
    m_fontCount->setText(tr("Database font count", "Example - Database font count: 126") +
                         QStringLiteral(" : %1").arg(m_repository->fontCount()));
}

void FMSControlCenter::updateButtons()
{
    const FMSLog* log = FMSLog::instance();
    m_log->setVisible(!m_adder->isSearching() && log && log->lastScanTime() != 0);
    m_resume->setText(m_adder->isPaused() ? tr("Resume", "button title") : tr("Pause", "button title"));
    const int failed = m_adder->failedFontFiles().size();
    m_errors->setVisible(failed > 0);
    m_errors->setText(ui::warningsText(failed));
    const bool unsettled = m_adder->isPausing() || m_adder->isStopping() || m_adder->isSearching();
    m_resume->setEnabled(m_adder->isAdding() && !unsettled);
    m_abort->setEnabled(m_adder->isAdding() && !unsettled);
    m_scan->setEnabled(!m_adder->isAdding() && !unsettled);
}
