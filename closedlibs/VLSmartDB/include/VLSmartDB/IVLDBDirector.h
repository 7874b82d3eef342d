#pragma once

#include <QtGlobal>

#include <cstdint>
#include <string>
#include <vector>

#ifdef VLSMARTDB_BUILD
#define VLSMARTDB_EXPORT Q_DECL_EXPORT
#else
#define VLSMARTDB_EXPORT Q_DECL_IMPORT
#endif

namespace VLSmartDB {

//! \brief The id of an object: either a GUID with an empty `text`, or a text with all other fields zero. The
//!   text "none" is the id of no object.
struct VLDBId {
    std::uint32_t data1 = 0; //!< first group of the GUID
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::uint8_t data4[8] = {}; //!< the last two groups, in the order of the notation
    std::wstring text;
};

//! \brief The objects directly below an object, which owns this list.
class IVLDBChildren
{
public:
    //! Replaces the content of `ids` by the ids of the children.
    virtual void ListIds(std::vector<VLDBId>& ids) = 0;

protected:
    ~IVLDBChildren() = default;
};

//! \brief An object of a database, which owns it.
class IVLDBObject
{
public:
    virtual VLDBId GetId() = 0;
    //! Never null.
    virtual IVLDBChildren* GetChildren() = 0;
    //! The name for the user.
    virtual std::wstring GetName() = 0;
    virtual std::wstring GetTypeName() = 0;
    //! The value of the property, empty if it is not set.
    virtual std::wstring GetProperty(const std::wstring& key) = 0;

protected:
    ~IVLDBObject() = default;
};

//! \brief A database.
class IVLDB
{
public:
    //! The object; null if it is missing or not loaded. An empty `scope` is the whole database.
    virtual IVLDBObject* GetObject(const VLDBId& id, const std::wstring& scope) = 0;
    //! Makes the object and its descendants available to GetObject. Returns false if the object is missing.
    virtual bool LoadObject(const VLDBId& id) = 0;

protected:
    ~IVLDB() = default;
};

//! \brief Provides the open database.
class IVLDBDirector
{
public:
    virtual IVLDB* GetDB() = 0;

protected:
    ~IVLDBDirector() = default;
};

//! The only director; never null. GUI thread only, with all objects that it provides.
VLSMARTDB_EXPORT IVLDBDirector* GetIDBDirector();

} // namespace VLSmartDB
