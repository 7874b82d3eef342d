#pragma once

#include "database.h"

namespace VLSmartDB {

//! \brief Owns the only database, which is always open.
class Director final : public IVLDBDirector
{
public:
    static Director& instance();

    IVLDB* GetDB() override { return &m_database; }
    Database& database() { return m_database; }

private:
    Database m_database;
};

} // namespace VLSmartDB
