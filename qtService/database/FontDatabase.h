#pragma once

#include "qtService/database/ColumnDataTransformationStrategy.h"
#include "qtService/database/DatabaseConnectionFactory.h"

#include <QHash>
#include <QSet>

template <class Column>
class DatabaseTableGateway;

// fms.db: one row of table "font" for each catalogued face, and one of table "feature" for the shape features of each.
// Opens the file, makes its tables when it is new, and owns the gateways through which every row passes. Any thread may
// use it, each through a connection of its own; readers never wait for the writer.
//
// A file that is no database, or is damaged, is moved aside under a dated name and a new one is made; the paths of the
// fonts that could still be read from it go to "olddbfontfiles.ev" beside it, from where the next rescan adds them
// again. fileState() says what was found, so that the user can be told.
class FontDatabase : public QObject
{
    Q_OBJECT

public:
    // The format of the file, kept in PRAGMA user_version.
    static constexpr int FormatVersion = 1;

    // Columns by their position in the table.
    enum FontTableColumn
    {
        id = 0,
        file_name,
        original_file_name,
        active,
        face_name,
        style,
        menu_family_name,
        menu_style_name,
        full_name,
        ps_name,
        sfnt_ps_name,
        bold,
        italic,
        deleted,
        mono,
        smallcaps,
        ligature,
        serif,
        version,
        vendor,
        vendor_url,
        designer,
        designer_url,
        description,
        trademark,
        other_info,
        format,
        foundry,
        added,
        used,
        downloaded,
        rating,
        license,
        license_url,
        format_details,
        embedding_rights,
        comments,
        other_info2,
        style_field,
        serif_style,
        hwi,
        hhe,
        hwe,
        supported_subsets,
        italic_angle,
        specific_width,
        specific_height,
        filehash,
        notes,
        tags,
        latin_metrics_correction,
        full_metrics_correction,
        sc_all,
        sc_body,
        sc_head,
        face_index,
        activated,
        deactivated,
        last_seen,
        filter_bits,
        online_id,
        online_source,
        is_purchased
    };

    enum FeatureTableColumn
    {
        font_id = 0,
        character,
        featuredata
    };

    enum FileState
    {
        Opened,
        Created,         // there was no file, or an empty one
        DamagedReplaced, // movedFileName() holds the old one
        OutdatedReplaced,
        CannotReplace, // damaged or outdated, and it cannot be moved
        CannotOpen
    };

    // Never fails: a database that cannot be opened shows in fileState() and in failing statements.
    explicit FontDatabase(const QString& databaseFileName, QObject* parent = nullptr);
    ~FontDatabase() override;

    // Makes sure that a catalogue of the current format can be opened under the name, moving aside whatever else lies
    // there: damaged files, catalogues of another format, databases of other programs. The constructor is less strict:
    // it leaves a database alone that holds tables of others. Called before any connection to the file is open.
    static FileState prepareFile(const QString& databaseFileName, QString* movedFileName = nullptr);

    FileState fileState() const;
    // Where a replaced file went; empty when none was.
    QString movedFileName() const;
    QString databaseFileName() const;

    // Replaces a file that turned out to be damaged while it was read. Only for start-up: no other thread may hold a
    // connection. False when the damaged file cannot be moved away.
    bool replaceDamaged();
    // For the reader that found the file not to be readable, whatever the look at it before had shown.
    void setUnreadable();

    QSharedPointer<DatabaseConnectionFactory> connectionFactory() const;
    DatabaseTableGateway<FontTableColumn>* fontGateway() const;
    DatabaseTableGateway<FeatureTableColumn>* featureGateway() const;
    QSharedPointer<ColumnDataTransformationStrategy<FontTableColumn>> fontTransformation() const;
    QSharedPointer<ColumnDataTransformationStrategy<FeatureTableColumn>> featureTransformation() const;

    const QHash<QString, FontTableColumn>& fontColumns() const;
    const QHash<QString, FeatureTableColumn>& featureColumns() const;
    // Column 0 for a name that is none.
    FontTableColumn fontColumn(const QString& name) const;
    QString fontColumnName(FontTableColumn column) const;
    FeatureTableColumn featureColumn(const QString& name) const;
    QString featureColumnName(FeatureTableColumn column) const;
    const QSet<FontTableColumn>& plainFontColumns() const;
    const QSet<FeatureTableColumn>& plainFeatureColumns() const;

private:
    void createTablesWhenEmpty();

    const QString m_fileName;
    QSharedPointer<DatabaseConnectionFactory> m_connectionFactory;
    QScopedPointer<DatabaseTableGateway<FontTableColumn>> m_fontGateway;
    QScopedPointer<DatabaseTableGateway<FeatureTableColumn>> m_featureGateway;
    QSharedPointer<ColumnDataTransformationStrategy<FontTableColumn>> m_fontTransformation;
    QSharedPointer<ColumnDataTransformationStrategy<FeatureTableColumn>> m_featureTransformation;
    QHash<QString, FontTableColumn> m_fontColumns;
    QHash<QString, FeatureTableColumn> m_featureColumns;
    QSet<FontTableColumn> m_plainFontColumns;
    QSet<FeatureTableColumn> m_plainFeatureColumns;
    FileState m_fileState = Opened;
    QString m_movedFileName;
};
