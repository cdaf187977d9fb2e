#pragma once

#include <QDialog>

class QDate;

// Says what this program is, its version and its build.
class AboutDialog : public QDialog
{
    Q_OBJECT

public:
    AboutDialog(const QString& title, const QString& version, const QDate& buildDate, QWidget* parent = nullptr);

private slots:
    void openUrl(QString url);
};
