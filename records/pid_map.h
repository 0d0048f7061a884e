// Values by pid, visited in ascending pid. The part of std::map that the records need, in one block of
// memory: rules look at every process many times over, and a block is read several times as fast as the
// scattered nodes of a tree. Adding in ascending pid is cheap, in any other order it moves all that lies
// behind. Adding and erasing end every reference into the map.
#pragma once

#include <algorithm>
#include <cstddef>
#include <tuple>
#include <utility>
#include <vector>

#include "records/basics.h"
#include "records/checked.h"

namespace tarnwick {

template <typename Value>
class PidMap {
 public:
  using value_type = std::pair<Pid, Value>;
  using iterator = typename std::vector<value_type>::iterator;
  using const_iterator = typename std::vector<value_type>::const_iterator;

  iterator begin() { return entries_.begin(); }
  iterator end() { return entries_.end(); }
  const_iterator begin() const { return entries_.begin(); }
  const_iterator end() const { return entries_.end(); }
  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  void reserve(std::size_t count) { entries_.reserve(count); }

  iterator find(Pid pid) { return begin() + (std::as_const(*this).find(pid) - entries_.cbegin()); }
  const_iterator find(Pid pid) const {
    const auto place = placeOf(pid);
    return place != end() && place->first == pid ? place : end();
  }
  bool contains(Pid pid) const { return find(pid) != end(); }

  // To ask for a pid that is not there is a fault.
  const Value& at(Pid pid) const {
    const auto entry = find(pid);
    if (entry == end()) fault("asked for a pid that is not in the map");
    return entry->second;
  }
  Value& at(Pid pid) { return const_cast<Value&>(std::as_const(*this).at(pid)); }

  // Adds an empty value where there is none.
  Value& operator[](Pid pid) {
    const auto place = entries_.empty() || entries_.back().first < pid ? entries_.cend() : placeOf(pid);
    if (place != entries_.cend() && place->first == pid) return find(pid)->second;
    return entries_.emplace(place, std::piecewise_construct, std::tuple(pid), std::tuple())->second;
  }

  void erase(Pid pid) {
    if (const auto entry = find(pid); entry != end()) entries_.erase(entry);
  }

  void clear() { entries_.clear(); }

 private:
  // The first entry that is not below `pid`.
  const_iterator placeOf(Pid pid) const {
    return std::lower_bound(begin(), end(), pid, [](const auto& entry, Pid p) { return entry.first < p; });
  }

  std::vector<value_type> entries_;
};

}  // namespace tarnwick
