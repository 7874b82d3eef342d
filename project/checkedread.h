#pragma once

#include <map>
#include <stdexcept>

namespace NelvoPlugin {

//! The value under `key`. Throws std::out_of_range with one text on every standard library if there is none;
//! nothing in the plug-in catches it.
template <typename Key, typename Value>
const Value& checkedRead(const std::map<Key, Value>& map, const Key& key)
{
    const auto found = map.find(key);
    if (found == map.end())
        throw std::out_of_range("invalid map<K, T> key");
    return found->second;
}

} // namespace NelvoPlugin
