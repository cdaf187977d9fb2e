#pragma once

#include <QDialog>

// The logo and the version while the library opens.
class SplashScreenDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SplashScreenDialog(QWidget* parent = nullptr);

protected:
    // Whoever is in a hurry clicks it away.
    void mousePressEvent(QMouseEvent* event) override;
};
