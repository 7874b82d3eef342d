#pragma once

#include <map>
#include <stdexcept>

namespace NelvoPlugin {

//! The value under `key`. Throws std::out_of_range with the same text on every system if the key is missing.
//! The plug-in does not catch it.
template <typename Key, typename Value>
const Value& checkedRead(const std::map<Key, Value>& map, const Key& key)
{
    const auto found = map.find(key);
    if (found == map.end())
        throw std::out_of_range("invalid map<K, T> key");
    return found->second;
}

} // namespace NelvoPlugin
