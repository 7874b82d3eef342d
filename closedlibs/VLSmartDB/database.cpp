#include "database.h"

#include <QUuid>

#include <algorithm>
#include <iterator>
#include <tuple>

namespace VLSmartDB {

VLDBId idFromText(const QString& text)
{
    VLDBId id;
    const QUuid guid = QUuid::fromString(text);
    if (guid.isNull()) {
        id.text = text.toStdWString();
        return id;
    }
    id.data1 = guid.data1;
    id.data2 = guid.data2;
    id.data3 = guid.data3;
    std::copy(std::begin(guid.data4), std::end(guid.data4), std::begin(id.data4));
    return id;
}

bool IdOrder::operator()(const VLDBId& left, const VLDBId& right) const
{
    const auto head = [](const VLDBId& id) { return std::tie(id.data1, id.data2, id.data3, id.text); };
    if (head(left) != head(right))
        return head(left) < head(right);
    return std::lexicographical_compare(std::begin(left.data4), std::end(left.data4), std::begin(right.data4),
                                        std::end(right.data4));
}

Object::Object(const ObjectRecord& record)
    : m_id(idFromText(record.id)), m_name(record.name.toStdWString()), m_type(record.type.toStdWString())
{
    for (auto property = record.properties.begin(); property != record.properties.end(); ++property)
        m_properties.emplace(property.key().toStdWString(), property.value().toStdWString());
    for (const ObjectRecord& child : record.children)
        m_childIds.push_back(idFromText(child.id));
}

std::wstring Object::GetProperty(const std::wstring& key)
{
    const auto found = m_properties.find(key);
    return found == m_properties.end() ? std::wstring() : found->second;
}

IVLDBObject* Database::GetObject(const VLDBId& id, const std::wstring& scope)
{
    const auto found = m_objects.find(id);
    const bool isThere = scope.empty() && found != m_objects.end() && found->second->isLoaded();
    return isThere ? found->second.get() : nullptr;
}

bool Database::LoadObject(const VLDBId& id)
{
    const auto found = m_objects.find(id);
    if (found == m_objects.end())
        return false;
    found->second->setLoaded();
    for (const VLDBId& child : found->second->childIds())
        LoadObject(child);
    return true;
}

void Database::add(const std::vector<ObjectRecord>& records)
{
    Objects fresh;
    for (const ObjectRecord& record : records)
        insert(record, fresh);
    m_objects.merge(fresh);
}

void Database::insert(const ObjectRecord& record, Objects& fresh) const
{
    if (record.id.isEmpty() || record.id == QLatin1String("none"))
        throw DatabaseError{QStringLiteral("\"%1\" names no object").arg(record.id)};
    const VLDBId id = idFromText(record.id);
    if (m_objects.count(id) > 0 || !fresh.emplace(id, std::make_unique<Object>(record)).second)
        throw DatabaseError{QStringLiteral("there is an object \"%1\" already").arg(record.id)};
    for (const ObjectRecord& child : record.children)
        insert(child, fresh);
}

} // namespace VLSmartDB
