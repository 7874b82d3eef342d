#include "tests/sdk/binaryinterface/slots.h"

#include <array>

namespace BinaryInterface::Details {

namespace {

constexpr std::size_t MostSlots = 64;

using Recorder = void (*)();
using VirtualTable = std::array<Recorder, MostSlots>;

std::size_t kept = 0;

template <std::size_t Slot>
[[noreturn]] void throwSlot()
{
    throw Reached{Slot};
}

template <std::size_t Slot>
void keepSlot()
{
    kept = Slot;
}

template <std::size_t... Slot>
VirtualTable throwingTable(std::index_sequence<Slot...> /*slots*/)
{
    return {&throwSlot<Slot>...};
}

template <std::size_t... Slot>
VirtualTable keepingTable(std::index_sequence<Slot...> /*slots*/)
{
    return {&keepSlot<Slot>...};
}

//! An object with a virtual table and enough members for every interface.
struct AnyObject {
    const Recorder* virtualTable;
    void* members[7] = {};
};

} // namespace

void* anyObject(Recording recording)
{
    static const VirtualTable throwing = throwingTable(std::make_index_sequence<MostSlots>());
    static const VirtualTable keeping = keepingTable(std::make_index_sequence<MostSlots>());
    static AnyObject thrower{throwing.data()};
    static AnyObject keeper{keeping.data()};
    return recording == Recording::Throw ? &thrower : &keeper;
}

std::size_t keptSlot()
{
    return kept;
}

} // namespace BinaryInterface::Details
