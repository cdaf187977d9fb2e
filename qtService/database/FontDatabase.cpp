#include "qtService/database/FontDatabase.h"

#include "qtService/database/DatabaseTableGateway.h"
#include "qtService/database/DatabaseTransaction.h"
#include "qtService/database/EncryptedTransformationStrategy.h"
#include "qtService/database/FeatureSerializedTransformationStrategy.h"
#include "qtService/database/FontDatabaseFile.h"
#include "qtService/database/FontDatabaseStatements.h"
#include "qtService/database/FontSerializedTransformationStrategy.h"

#include <QDebug>
#include <QSqlQuery>

using namespace fontdatabasefile;

namespace {

template <class Column>
QHash<QString, Column> columnTable(const QStringList& names)
{
    QHash<QString, Column> table;
    for (int i = 0; i < names.size(); ++i)
        table.insert(names.at(i), Column(i));
    return table;
}

// Moves a file aside that cannot serve as the catalogue. `strict` also moves databases of others.
FontDatabase::FileState replaceUnusable(const QString& fileName, bool strict, QString* movedFileName)
{
    const Condition condition = inspect(fileName, fontdatabase::fontColumnNames(), FontDatabase::FormatVersion);
    switch (condition) {
    case Missing:
        return FontDatabase::Created;
    case Current:
        return FontDatabase::Opened;
    case Unreadable:
        return FontDatabase::CannotOpen;
    case Foreign:
        if (!strict)
            return FontDatabase::Opened;
        break;
    case Outdated:
    case Damaged:
        break;
    }
    qWarning().noquote() << "E_1_" << (condition == Damaged ? "Damaged database" : "Wrong version of database")
                         << fileName;
    const QString moved = setAside(fileName, condition);
    if (movedFileName)
        *movedFileName = moved;
    if (moved.isEmpty())
        return FontDatabase::CannotReplace;
    return condition == Damaged ? FontDatabase::DamagedReplaced : FontDatabase::OutdatedReplaced;
}

} // namespace

FontDatabase::FontDatabase(const QString& databaseFileName, QObject* parent)
    : QObject(parent)
    , m_fileName(databaseFileName)
    , m_fontColumns(columnTable<FontTableColumn>(fontdatabase::fontColumnNames()))
    , m_featureColumns(columnTable<FeatureTableColumn>(fontdatabase::featureColumnNames()))
    , m_plainFontColumns(fontdatabase::plainFontColumns())
    , m_plainFeatureColumns{font_id, character, featuredata}
{
    m_fileState = replaceUnusable(m_fileName, false, &m_movedFileName);

    DatabaseConnectionFactory::Parameters parameters;
    parameters.databaseName = m_fileName;
    parameters.startStatements = QStringList{QStringLiteral("PRAGMA journal_mode=WAL;")};
    m_connectionFactory = QSharedPointer<DatabaseConnectionFactory>::create(parameters);

    m_fontTransformation = QSharedPointer<EncryptedTransformationStrategy<FontTableColumn>>::create(
        m_plainFontColumns, QSharedPointer<FontSerializedTransformationStrategy>::create());
    m_featureTransformation = QSharedPointer<EncryptedTransformationStrategy<FeatureTableColumn>>::create(
        m_plainFeatureColumns, QSharedPointer<FeatureSerializedTransformationStrategy>::create());

    createTablesWhenEmpty();

    m_fontGateway.reset(new DatabaseTableGateway<FontTableColumn>(m_connectionFactory, QStringLiteral("font"), id,
                                                                  m_fontColumns, m_fontTransformation));
    m_featureGateway.reset(new DatabaseTableGateway<FeatureTableColumn>(
        m_connectionFactory, QStringLiteral("feature"), font_id, m_featureColumns, m_featureTransformation));
}

FontDatabase::~FontDatabase() = default;

FontDatabase::FileState FontDatabase::prepareFile(const QString& databaseFileName, QString* movedFileName)
{
    return replaceUnusable(databaseFileName, true, movedFileName);
}

void FontDatabase::createTablesWhenEmpty()
{
    const QSqlDatabase database = m_connectionFactory->database();
    if (!database.isOpen()) {
        m_fileState = CannotOpen;
        return;
    }
    if (!database.tables(QSql::Tables).isEmpty())
        return;

    // One transaction: a process killed here leaves an empty file, not half a schema.
    DatabaseTransaction transaction(database);
    QStringList statements = fontdatabase::creationStatements(m_connectionFactory->parameters().driver);
    statements.append(QStringLiteral("PRAGMA user_version = %1").arg(FormatVersion));
    bool succeeded = true;
    for (const QString& statement : qAsConst(statements)) {
        QSqlQuery query(database);
        qDebug().noquote() << "Executing:\n" << statement;
        if (query.exec(m_fontTransformation->transformStatement(statement))) {
            qDebug() << "SQL executed ok";
        } else {
            qWarning() << "E_1_"
                       << "Failed to execute the SQL!!!";
            succeeded = false;
        }
    }
    if (!transaction.commit() || !succeeded)
        m_fileState = CannotOpen;
}

bool FontDatabase::replaceDamaged()
{
    m_connectionFactory->closeConnection();
    const QString moved = setAside(m_fileName, Damaged);
    if (moved.isEmpty()) {
        m_fileState = CannotReplace;
        return false;
    }
    m_movedFileName = moved;
    m_fileState = DamagedReplaced;
    createTablesWhenEmpty();
    return m_fileState == DamagedReplaced;
}

void FontDatabase::setUnreadable()
{
    if (m_fileState != CannotReplace)
        m_fileState = CannotOpen;
}

FontDatabase::FileState FontDatabase::fileState() const
{
    return m_fileState;
}

QString FontDatabase::movedFileName() const
{
    return m_movedFileName;
}

QString FontDatabase::databaseFileName() const
{
    return m_fileName;
}

QSharedPointer<DatabaseConnectionFactory> FontDatabase::connectionFactory() const
{
    return m_connectionFactory;
}

DatabaseTableGateway<FontDatabase::FontTableColumn>* FontDatabase::fontGateway() const
{
    return m_fontGateway.data();
}

DatabaseTableGateway<FontDatabase::FeatureTableColumn>* FontDatabase::featureGateway() const
{
    return m_featureGateway.data();
}

QSharedPointer<ColumnDataTransformationStrategy<FontDatabase::FontTableColumn>> FontDatabase::fontTransformation() const
{
    return m_fontTransformation;
}

QSharedPointer<ColumnDataTransformationStrategy<FontDatabase::FeatureTableColumn>>
FontDatabase::featureTransformation() const
{
    return m_featureTransformation;
}

const QHash<QString, FontDatabase::FontTableColumn>& FontDatabase::fontColumns() const
{
    return m_fontColumns;
}

const QHash<QString, FontDatabase::FeatureTableColumn>& FontDatabase::featureColumns() const
{
    return m_featureColumns;
}

FontDatabase::FontTableColumn FontDatabase::fontColumn(const QString& name) const
{
    return m_fontColumns.value(name, id);
}

QString FontDatabase::fontColumnName(FontTableColumn column) const
{
    return m_fontColumns.key(column);
}

FontDatabase::FeatureTableColumn FontDatabase::featureColumn(const QString& name) const
{
    return m_featureColumns.value(name, font_id);
}

QString FontDatabase::featureColumnName(FeatureTableColumn column) const
{
    return m_featureColumns.key(column);
}

const QSet<FontDatabase::FontTableColumn>& FontDatabase::plainFontColumns() const
{
    return m_plainFontColumns;
}

const QSet<FontDatabase::FeatureTableColumn>& FontDatabase::plainFeatureColumns() const
{
    return m_plainFeatureColumns;
}
