#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

//! Finds the slot that a compiled call of a virtual operation uses. The call goes to an object whose virtual
//! table contains only recorders, one for each slot.
namespace BinaryInterface {

//! The result for an operation that is not virtual.
constexpr std::size_t NoSlot = static_cast<std::size_t>(-1);

//! \brief The slots of a destructor in a virtual table. Some compilers use two, others one.
struct Slots {
    std::size_t first = 0;
    std::size_t last = 0;
};

namespace Details {

//! Thrown by the recorder of the called slot, so that the operation returns no result.
struct Reached {
    std::size_t slot;
};

//! A recorder either throws its slot number or stores it.
enum class Recording { Throw, Keep };

//! An object for any interface. Each call of a virtual operation reaches a recorder.
void* anyObject(Recording recording);
//! The last stored slot number.
std::size_t keptSlot();

template <typename Interface>
Interface* object(Recording recording)
{
    // The compiler must not know the type of the object, or it could omit the virtual call.
    void* volatile any = anyObject(recording);
    return static_cast<Interface*>(any);
}

//! An argument of any type. The recorder does not read it.
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

//! A class with one more virtual operation, in the first slot after those of the interface.
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
