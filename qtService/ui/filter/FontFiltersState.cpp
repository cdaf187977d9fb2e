#include "qtService/ui/filter/FontFiltersState.h"

#include <utility>

namespace {

constexpr int allFormats = 3;

void registerMetaTypes()
{
    static const bool registered = [] {
        qRegisterMetaType<FontFiltersState>("FontFiltersState");
        qRegisterMetaTypeStreamOperators<FontFiltersState>("FontFiltersState");
        return true;
    }();
    Q_UNUSED(registered)
}

} // namespace

FontFiltersState::FontFiltersState(QObject* parent)
    : QObject(parent)
{
    registerMetaTypes();
}

FontFiltersState::FontFiltersState(const FontFiltersState& other)
    : QObject(nullptr)
    , m_values(other.m_values)
{
}

FontFiltersState& FontFiltersState::operator=(const FontFiltersState& other)
{
    if (this != &other) {
        m_values = other.m_values;
        emit changed();
    }
    return *this;
}

template <class T, class U>
void FontFiltersState::store(T& member, U&& value)
{
    member = std::forward<U>(value);
    emit changed();
}

void FontFiltersState::setTextSearchFields(const QList<int>& fields)
{
    store(m_values.textSearchFields, fields);
}

void FontFiltersState::setTextSearch(QString textsearch)
{
    store(m_values.textSearch, std::move(textsearch));
}

void FontFiltersState::setUserFamily(QString userfamily)
{
    store(m_values.userFamily, std::move(userfamily));
}

void FontFiltersState::setSerifs(bool serifs)
{
    store(m_values.serifs, serifs);
}

void FontFiltersState::setSanserifs(bool sanserifs)
{
    store(m_values.sanSerifs, sanserifs);
}

void FontFiltersState::setSymbols(bool symbols)
{
    store(m_values.symbols, symbols);
}

void FontFiltersState::setNonsymbols(bool nonsymbols)
{
    store(m_values.nonSymbols, nonsymbols);
}

void FontFiltersState::setMonospaced(bool monospaced)
{
    store(m_values.monospaced, monospaced);
}

void FontFiltersState::setNonMonospaced(bool nonmonospaced)
{
    store(m_values.nonMonospaced, nonmonospaced);
}

void FontFiltersState::setClasses(QStringList classes)
{
    store(m_values.classes, std::move(classes));
}

void FontFiltersState::setAngle(int angle)
{
    store(m_values.angle, angle);
}

void FontFiltersState::setWidth(int width)
{
    store(m_values.width, width);
}

void FontFiltersState::setWeight(int weight)
{
    store(m_values.weight, weight);
}

void FontFiltersState::setOptsize(int optsize)
{
    store(m_values.optsize, optsize);
}

void FontFiltersState::setFontActivity(FontActivity activity)
{
    store(m_values.fontActivity, activity);
}

void FontFiltersState::setFoundry(QString foundry)
{
    store(m_values.foundry, std::move(foundry));
}

void FontFiltersState::setUnicodeSubsets(QList<int> subsets)
{
    store(m_values.unicodeSubsets, std::move(subsets));
}

void FontFiltersState::setGroups(QList<int> groups)
{
    store(m_values.groups, std::move(groups));
}

void FontFiltersState::setProjects(QList<int> projects)
{
    store(m_values.projects, std::move(projects));
}

void FontFiltersState::setTags(QList<int> tags)
{
    store(m_values.tags, std::move(tags));
}

void FontFiltersState::setRating(int rating)
{
    store(m_values.rating, rating);
}

void FontFiltersState::setFormats(QStringList formats)
{
    store(m_values.formats, std::move(formats));
}

void FontFiltersState::clear()
{
    Values values;
    values.textSearchFields = m_values.textSearchFields;
    m_values = values;
    emit cleared();
    emit changed();
}

bool FontFiltersState::isCleared() const
{
    const Values& v = m_values;
    const bool noText = v.userFamily.isEmpty() && v.textSearch.isEmpty() && v.foundry.isEmpty() && v.classes.isEmpty();
    const bool anyFormat = v.formats.isEmpty() || v.formats.size() == allFormats;
    const bool anyClass = v.sanSerifs && v.serifs && v.symbols && v.nonSymbols && v.monospaced && v.nonMonospaced;
    const bool noBucket = v.angle == 0 && v.width == 0 && v.weight == 0 && v.optsize == 0;
    const bool noList = v.unicodeSubsets.isEmpty() && v.groups.isEmpty() && v.projects.isEmpty() && v.tags.isEmpty();
    return noText && anyFormat && anyClass && noBucket && noList && v.rating == -1 && v.fontActivity == AnyActivity;
}

QDataStream& operator<<(QDataStream& stream, const FontFiltersState& state)
{
    const FontFiltersState::Values& v = state.m_values;
    return stream << v.userFamily << v.textSearch << v.foundry << v.formats << v.textSearchFields << v.sanSerifs
                  << v.serifs << v.symbols << v.nonSymbols << v.monospaced << v.nonMonospaced << v.classes << v.angle
                  << v.width << v.weight << v.optsize << v.unicodeSubsets << v.groups << v.projects << v.tags
                  << v.rating << int(v.fontActivity);
}

QDataStream& operator>>(QDataStream& stream, FontFiltersState& state)
{
    FontFiltersState::Values& v = state.m_values;
    int activity = 0;
    stream >> v.userFamily >> v.textSearch >> v.foundry >> v.formats >> v.textSearchFields >> v.sanSerifs >> v.serifs >>
        v.symbols >> v.nonSymbols >> v.monospaced >> v.nonMonospaced >> v.classes >> v.angle >> v.width >> v.weight >>
        v.optsize >> v.unicodeSubsets >> v.groups >> v.projects >> v.tags >> v.rating >> activity;
    v.fontActivity = FontFiltersState::FontActivity(activity);
    return stream;
}
