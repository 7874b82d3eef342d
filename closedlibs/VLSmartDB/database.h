#pragma once

#include <VLSmartDB/DevkitDatabase.h>

#include <map>
#include <memory>

namespace VLSmartDB {

//! The error in a record or a seed file.
struct DatabaseError {
    QString text;
};

//! A GUID id if the text is a GUID in the usual notation, with or without braces; otherwise a text id.
VLDBId idFromText(const QString& text);

//! \brief Sorts ids. Ids of different objects are never equal.
struct IdOrder {
    bool operator()(const VLDBId& left, const VLDBId& right) const;
};

//! \brief An object, with its children by their ids.
class Object final : public IVLDBObject, private IVLDBChildren
{
public:
    explicit Object(const ObjectRecord& record);

    VLDBId GetId() override { return m_id; }
    IVLDBChildren* GetChildren() override { return this; }
    std::wstring GetName() override { return m_name; }
    std::wstring GetTypeName() override { return m_type; }
    std::wstring GetProperty(const std::wstring& key) override;

    const std::vector<VLDBId>& childIds() const { return m_childIds; }
    bool isLoaded() const { return m_isLoaded; }
    void setLoaded() { m_isLoaded = true; }

private:
    void ListIds(std::vector<VLDBId>& ids) override { ids = m_childIds; }

    const VLDBId m_id;
    const std::wstring m_name;
    const std::wstring m_type;
    std::map<std::wstring, std::wstring> m_properties;
    std::vector<VLDBId> m_childIds;
    bool m_isLoaded = false;
};

//! \brief The objects in memory.
class Database final : public IVLDB
{
public:
    IVLDBObject* GetObject(const VLDBId& id, const std::wstring& scope) override;
    bool LoadObject(const VLDBId& id) override;

    //! Adds these objects with all their descendants. On an error adds none and throws a DatabaseError.
    void add(const std::vector<ObjectRecord>& records);

private:
    using Objects = std::map<VLDBId, std::unique_ptr<Object>, IdOrder>;

    void insert(const ObjectRecord& record, Objects& fresh) const;

    Objects m_objects; // of every level
};

} // namespace VLSmartDB
