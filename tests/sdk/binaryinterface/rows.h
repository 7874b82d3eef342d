#pragma once

#include "tests/sdk/binaryinterface/slots.h"

#include <string>
#include <vector>

//! The rows of the table. Each row compares itself with the headers and appends the differences to a list.
namespace BinaryInterface {

using Problems = std::vector<std::string>;

//! True if the table's offsets and sizes apply: they are those of libstdc++ on 64-bit systems.
bool numbersApply();

//! \brief Compares the members of an object one after the other.
class Layout
{
public:
    //! Compares a member and appends differences to `problems`.
    void add(const std::string& name, std::size_t actualOffset, std::size_t numberInTable, std::size_t size,
             std::size_t alignment, Problems& problems);
    //! Compares the size and the alignment of the whole object and appends differences to `problems`.
    void end(const std::string& name, std::size_t actualSize, std::size_t numberInTable,
             std::size_t alignment, Problems& problems) const;

private:
    std::size_t m_end = 0;
    std::size_t m_alignment = 1;
};

template <typename Class, typename Member>
std::size_t offsetOf(Member Class::*member)
{
    alignas(Class) static char storage[sizeof(Class)];
    const auto* const object = reinterpret_cast<const Class*>(storage);
    return static_cast<std::size_t>(reinterpret_cast<const char*>(&(object->*member)) - storage);
}

//! \brief A public record: its fields in order, each with type and offset, and its size.
//!
//! Offsets and size are compared with the table if numbersApply(). On every system, each field must follow
//! the previous one as closely as its alignment allows, and the record must end after the last field.
template <typename Record>
class RecordRow
{
public:
    RecordRow(std::string name, Problems& problems) : m_name(std::move(name)), m_problems(problems) {}

    template <typename Field>
    RecordRow& field(const char* name, Field Record::*member, std::size_t offset)
    {
        m_layout.add(m_name + "::" + name, offsetOf(member), offset, sizeof(Field), alignof(Field),
                     m_problems);
        return *this;
    }
    void size(std::size_t size) const
    {
        m_layout.end(m_name, sizeof(Record), size, alignof(Record), m_problems);
    }

private:
    std::string m_name;
    Layout m_layout;
    Problems& m_problems;
};

//! \brief An interface: its operations in order, each with its signature, and its size in pointers.
template <typename Interface>
class InterfaceRow
{
public:
    InterfaceRow(std::string name, Problems& problems) : m_name(std::move(name)), m_problems(problems) {}

    template <typename Signature>
    InterfaceRow& operation(const char* name, Signature Interface::*operation)
    {
        const std::size_t slot = slotOf(operation);
        take(name, {slot, slot});
        return *this;
    }
    InterfaceRow& destructor()
    {
        take("the destructor", destructorSlots<Interface>());
        return *this;
    }
    //! A data member, after the pointer to the virtual table and `pointers - 1` others.
    template <typename Field>
    InterfaceRow& field(const char* name, Field Interface::*member, std::size_t pointers)
    {
        if (offsetOf(member) != pointers * sizeof(void*))
            m_problems.push_back(m_name + "::" + name + " is at " + std::to_string(offsetOf(member)));
        return *this;
    }
    //! Ends the row. The interface must have no other operation, and its objects this size.
    void size(std::size_t pointers) const
    {
        if (slotCount<Interface>() != m_next)
            m_problems.push_back(m_name + " has " + std::to_string(slotCount<Interface>()) + " slots, not " +
                                 std::to_string(m_next));
        if (sizeof(Interface) != pointers * sizeof(void*))
            m_problems.push_back(m_name + " is " + std::to_string(sizeof(Interface)) + " bytes large");
    }

private:
    void take(const std::string& what, const Slots& slots)
    {
        if (slots.first == NoSlot)
            m_problems.push_back(m_name + ": " + what + " is not virtual");
        else if (slots.first != m_next)
            m_problems.push_back(m_name + ": " + what + " is in slot " + std::to_string(slots.first) +
                                 ", not " + std::to_string(m_next));
        m_next = slots.last + 1;
    }

    std::string m_name;
    std::size_t m_next = 0;
    Problems& m_problems;
};

} // namespace BinaryInterface
