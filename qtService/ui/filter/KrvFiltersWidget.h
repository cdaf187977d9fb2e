#pragma once

#include <QStringList>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QListWidget;
class QTabWidget;

// The panel of check boxes, foundries and character ranges that narrow the list. It holds no filter of its own beyond
// the state of its controls.
class KrvFiltersWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QStringList enabledFormats READ enabledFormats WRITE setEnabledFormats NOTIFY enabledFormatsChanged)
    Q_PROPERTY(bool serifsEnabled READ serifsEnabled WRITE setSerifsEnabled NOTIFY serifsEnabledChanged)
    Q_PROPERTY(bool sansSerifsEnabled READ sansSerifsEnabled WRITE setSansSerifsEnabled NOTIFY sansSerifsEnabledChanged)
    Q_PROPERTY(bool monosEnabled READ monosEnabled WRITE setMonosEnabled NOTIFY monosEnabledChanged)
    Q_PROPERTY(bool nonMonosEnabled READ nonMonosEnabled WRITE setNonMonosEnabled NOTIFY nonMonosEnabledChanged)
    Q_PROPERTY(bool symbolsEnabled READ symbolsEnabled WRITE setSymbolsEnabled NOTIFY symbolsEnabledChanged)
    Q_PROPERTY(bool nonSymbolsEnabled READ nonSymbolsEnabled WRITE setNonSymbolsEnabled NOTIFY nonSymbolsEnabledChanged)
    Q_PROPERTY(QStringList foundries READ foundries WRITE setFoundries NOTIFY foundriesChanged)
    Q_PROPERTY(QString currentFoundry READ currentFoundry WRITE setCurrentFoundry NOTIFY currentFoundryChanged)

public:
    explicit KrvFiltersWidget(QWidget* parent = nullptr);

    // The catalogue's names of the checked formats: "TrueType", "OpenType", "Type 1", in this order.
    QStringList enabledFormats() const;
    bool serifsEnabled() const;
    bool sansSerifsEnabled() const;
    bool monosEnabled() const;
    bool nonMonosEnabled() const;
    bool symbolsEnabled() const;
    bool nonSymbolsEnabled() const;
    QStringList foundries() const { return m_foundries; }
    QString currentFoundry() const;
    QList<int> selectedCharacterRanges() const;

public slots:
    void setEnabledFormats(QStringList formats);
    void setSerifsEnabled(bool enabled);
    void setSansSerifsEnabled(bool enabled);
    void setMonosEnabled(bool enabled);
    void setNonMonosEnabled(bool enabled);
    void setSymbolsEnabled(bool enabled);
    void setNonSymbolsEnabled(bool enabled);
    void setFoundries(QStringList foundries);
    void setCurrentFoundry(QString foundry);
    void onCharacterRangeItemChanged();
    void setSelectedCharacterRanges(QList<int> ranges);
    void reset();

signals:
    void enabledFormatsChanged(QStringList formats);
    void serifsEnabledChanged(bool enabled);
    void sansSerifsEnabledChanged(bool enabled);
    void monosEnabledChanged(bool enabled);
    void nonMonosEnabledChanged(bool enabled);
    void symbolsEnabledChanged(bool enabled);
    void nonSymbolsEnabledChanged(bool enabled);
    void foundriesChanged(QStringList foundries);
    void currentFoundryChanged(QString foundry);
    void selectedCharacterRangesChanged(QList<int> rangeList);

private slots:
    void onFormatsCheckboxesChanged();

private:
    void setupUi();
    QWidget* addTab(const char* objectName, const QString& title, int layoutNumber);
    QCheckBox* addCheckBox(QWidget* page, const char* objectName, const QString& text);

    QTabWidget* m_tabs;
    QCheckBox* m_openType;
    QCheckBox* m_trueType;
    QCheckBox* m_type1;
    QCheckBox* m_serif;
    QCheckBox* m_sansSerif;
    QCheckBox* m_symbol;
    QCheckBox* m_nonSymbol;
    QCheckBox* m_mono;
    QCheckBox* m_nonMono;
    QComboBox* m_foundry;
    QListWidget* m_ranges;
    QStringList m_foundries;
};
