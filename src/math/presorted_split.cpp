// presorted_split.cpp - the median splits by partitioning lists kept in
// order, so that each level of the tree reads its objects in order, a few
// times, instead of sorting them and reading their boxes scattered through
// memory.
#include "math/presorted_split.h"

#include <emmintrin.h>

#include <algorithm>

#include "math/stable_key_sort.h"

namespace sciray {

namespace {

// The union of `count` boxes in a row, widened in that order: MINPD and
// MAXPD keep the new bound only when it is smaller (larger), as widen()
// does, two axes to a register.
bounding_box survey(const solid_box* boxes, std::uint32_t count) {
  bounding_box out;
  if (count == 0) return out;
  __m128d lo_xy = _mm_loadu_pd(boxes[0].lo), lo_z = _mm_load_sd(boxes[0].lo + 2);
  __m128d hi_xy = _mm_loadu_pd(boxes[0].hi), hi_z = _mm_load_sd(boxes[0].hi + 2);
  for (std::uint32_t i = 1; i < count; ++i) {
    lo_xy = _mm_min_pd(_mm_loadu_pd(boxes[i].lo), lo_xy);
    lo_z = _mm_min_sd(_mm_load_sd(boxes[i].lo + 2), lo_z);
    hi_xy = _mm_max_pd(_mm_loadu_pd(boxes[i].hi), hi_xy);
    hi_z = _mm_max_sd(_mm_load_sd(boxes[i].hi + 2), hi_z);
  }
  double lo[3], hi[3];
  _mm_storeu_pd(lo, lo_xy);
  _mm_storeu_pd(hi, hi_xy);
  _mm_store_sd(lo + 2, lo_z);
  _mm_store_sd(hi + 2, hi_z);
  for (int a = 0; a < 3; ++a) out.axis[a] = {0, lo[a], hi[a]};
  return out;
}

// Compares entries (an object and its box) in `chain` order.
auto in_order(const sort_chain& chain) {
  return [&chain](const auto& a, const auto& b) { return chain.before(*a.box, a.object, *b.box, b.object); };
}

}  // namespace

presorted_split::presorted_split(std::vector<solid_box> boxes, const box_source& source,
                                 std::vector<std::uint32_t>& order)
    : source_(source), order_(order) {
  const auto count = static_cast<std::uint32_t>(boxes.size());
  std::vector<keyed_item> keyed(count), scratch;
  for (int a = 0; a < 3; ++a) {
    for (std::uint32_t i = 0; i < count; ++i) keyed[i] = {boxes[i].centre(a), i};
    stable_sort_by_key(keyed, scratch);
    lists_[a].resize(count);
    std::uint32_t rank = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
      if (i > 0 && keyed[i].key != keyed[i - 1].key) ++rank;
      lists_[a][i] = {rank, keyed[i].item};
    }
  }
  std::vector<keyed_item>().swap(keyed);
  std::vector<keyed_item>().swap(scratch);
  boxes_.resize(count);
  for (std::uint32_t i = 0; i < count; ++i) boxes_[i] = boxes[lists_[0][i].object];
  std::vector<solid_box>().swap(boxes);
  left_.resize(count);
  // The right part of any node, and one more place for the item that every
  // step writes there whichever part it belongs to.
  spare_.resize(count - count / 2 + 1);
  spare_boxes_.resize(count - count / 2 + 1);
}

void presorted_split::order_leaf(std::uint32_t first, std::uint32_t count, const sort_chain& chain) {
  entries_.resize(count);
  for (std::uint32_t i = 0; i < count; ++i) entries_[i] = {&boxes_[first + i], lists_[0][first + i].object};
  std::sort(entries_.begin(), entries_.end(), in_order(chain));
  for (std::uint32_t i = 0; i < count; ++i) order_[first + i] = entries_[i].object;
}

void presorted_split::divide(std::uint32_t first, std::uint32_t count, int axis, const sort_chain& chain,
                             bounding_box child[2]) {
  const ranked* list = lists_[axis].data() + first;
  const std::uint32_t half = count / 2;
  for (std::uint32_t i = 0; i < count; ++i) left_[list[i].object] = i < half;
  // The split axis's own list is already parted, unless a run of equal
  // centres across the median went its own way.
  const bool run_parted = mark_median_run(list, count, chain);
  for (int a = 0; a < 3; ++a)
    if (a != axis || run_parted) partition(first, count, a);
  child[0] = survey(boxes_.data() + first, half);
  child[1] = survey(boxes_.data() + first + half, count - half);
}

// Objects with the median's centre lie in the list by number; the node's
// order (the chain) decides which of them go left, which takes a selection
// of the run's first ones in that order rather than a sort of the run.
// True if that changed which go left.
bool presorted_split::mark_median_run(const ranked* list, std::uint32_t count, const sort_chain& chain) {
  const std::uint32_t half = count / 2;
  if (half == 0 || chain.length == 0 || list[half - 1].rank != list[half].rank) return false;
  const std::uint32_t rank = list[half].rank;
  std::uint32_t start = half - 1, end = half + 1;
  while (start > 0 && list[start - 1].rank == rank) --start;
  while (end < count && list[end].rank == rank) ++end;
  run_.resize(end - start);
  run_boxes_.resize(end - start);
  for (std::uint32_t i = start; i < end; ++i) run_[i - start] = list[i].object;
  source_.boxes(run_.data(), run_.size(), run_boxes_.data());
  entries_.resize(run_.size());
  for (std::uint32_t k = 0; k < run_.size(); ++k) entries_[k] = {&run_boxes_[k], run_[k]};
  std::nth_element(entries_.begin(), entries_.begin() + (half - start), entries_.end(), in_order(chain));
  for (std::uint32_t k = 0; k < entries_.size(); ++k) left_[entries_[k].object] = start + k < half;
  for (std::uint32_t i = start; i < half; ++i)
    if (!left_[list[i].object]) return true;
  return false;
}

// A stable partition of one list by left_, the left part staying in place;
// the boxes move along with the first list. Every item is written to both
// parts and only one count moves on, which costs less than a branch that
// the order of the list makes unpredictable.
void presorted_split::partition(std::uint32_t first, std::uint32_t count, int axis) {
  ranked* list = lists_[axis].data() + first;
  std::uint32_t lefts = 0, rights = 0;
  if (axis == 0) {
    solid_box* boxes = boxes_.data() + first;
    for (std::uint32_t i = 0; i < count; ++i) {
      const ranked item = list[i];
      const solid_box box = boxes[i];
      const std::uint32_t go_left = left_[item.object];
      list[lefts] = item;
      boxes[lefts] = box;
      spare_[rights] = item;
      spare_boxes_[rights] = box;
      lefts += go_left;
      rights += 1 - go_left;
    }
    std::copy(spare_boxes_.begin(), spare_boxes_.begin() + rights, boxes + lefts);
  } else {
    for (std::uint32_t i = 0; i < count; ++i) {
      const ranked item = list[i];
      const std::uint32_t go_left = left_[item.object];
      list[lefts] = item;
      spare_[rights] = item;
      lefts += go_left;
      rights += 1 - go_left;
    }
  }
  std::copy(spare_.begin(), spare_.begin() + rights, list + lefts);
}

}  // namespace sciray
