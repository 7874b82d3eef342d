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

//! \brief Names an object: by a GUID, and then `text` is empty, or by a text, and then the rest is zero.
//! The text "none" names no object.
struct VLDBId {
    std::uint32_t data1 = 0; //!< first group of the GUID
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::uint8_t data4[8] = {}; //!< the last two groups, in the order in which they are written
    std::wstring text;
};

//! \brief The objects directly below an object. Belongs to that object.
class IVLDBChildren
{
public:
    //! Puts their ids into `ids`, in place of what is there.
    virtual void ListIds(std::vector<VLDBId>& ids) = 0;

protected:
    ~IVLDBChildren() = default;
};

//! \brief An object of a database, to which it belongs.
class IVLDBObject
{
public:
    virtual VLDBId GetId() = 0;
    //! Never null.
    virtual IVLDBChildren* GetChildren() = 0;
    //! The name to show.
    virtual std::wstring GetName() = 0;
    virtual std::wstring GetTypeName() = 0;
    //! The property's value, empty if it is not set.
    virtual std::wstring GetProperty(const std::wstring& key) = 0;

protected:
    ~IVLDBObject() = default;
};

//! \brief A database.
class IVLDB
{
public:
    //! The object, or null if there is none or it is not loaded. `scope` is empty for the whole database.
    virtual IVLDBObject* GetObject(const VLDBId& id, const std::wstring& scope) = 0;
    //! Makes the object and all that is below it available to GetObject. False if there is none.
    virtual bool LoadObject(const VLDBId& id) = 0;

protected:
    ~IVLDB() = default;
};

//! \brief The way to the open database.
class IVLDBDirector
{
public:
    virtual IVLDB* GetDB() = 0;

protected:
    ~IVLDBDirector() = default;
};

//! The only director; never null. It and all that it leads to are for the GUI thread.
VLSMARTDB_EXPORT IVLDBDirector* GetIDBDirector();

} // namespace VLSmartDB
