#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

//! Finds the slot of a virtual operation that a compiled call uses: the call goes to an object whose virtual
//! table contains recorders only.
namespace BinaryInterface {

//! For an operation that is called without a virtual table.
constexpr std::size_t NoSlot = static_cast<std::size_t>(-1);

//! \brief Slots of a virtual table; on some systems a destructor has two.
struct Slots {
    std::size_t first = 0;
    std::size_t last = 0;
};

namespace Details {

//! Thrown by the slot that a call has reached: the result of the operation is not created.
struct Reached {
    std::size_t slot;
};

//! What the recorders do with their number.
enum class Recording { Throw, Keep };

//! An object for any interface. Each call of a virtual operation reaches a recorder.
void* anyObject(Recording recording);
//! The number that was stored last.
std::size_t keptSlot();

template <typename Interface>
Interface* object(Recording recording)
{
    // Hides the object from the compiler.
    void* volatile any = anyObject(recording);
    return static_cast<Interface*>(any);
}

//! An argument of any type, which is not read.
template <typename Argument>
Argument anyArgument()
{
    if constexpr (std::is_reference_v<Argument>) {
        alignas(std::max_align_t) static char storage[sizeof(std::max_align_t)];
        void* volatile any = storage;
        return *static_cast<std::remove_reference_t<Argument>*>(any);
    } else {
        return Argument();
    }
}

//! A class whose own slot is the first one after those of the interface.
template <typename Interface>
class Next : public Interface
{
public:
    virtual void next() {}
};

} // namespace Details

template <typename Interface, typename Result, typename... Arguments>
std::size_t slotOf(Result (Interface::*operation)(Arguments...))
{
    try {
        (Details::object<Interface>(Details::Recording::Throw)->*operation)(
            Details::anyArgument<Arguments>()...);
    } catch (const Details::Reached& reached) {
        return reached.slot;
    }
    return NoSlot;
}

template <typename Interface>
Slots destructorSlots()
{
    static_assert(std::has_virtual_destructor_v<Interface>);
    auto* const object = Details::object<Interface>(Details::Recording::Keep);
    object->~Interface();
    const std::size_t first = Details::keptSlot();
    delete object;
    return {first, Details::keptSlot()};
}

//! The number of slots of the interface.
template <typename Interface>
std::size_t slotCount()
{
    return slotOf(&Details::Next<Interface>::next);
}

} // namespace BinaryInterface
