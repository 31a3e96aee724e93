#include "ui/ListRows.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>

#include "base/Error.h"

namespace ui {
namespace {

// A block: the header, then for each cell where its text ends, counted from the end of the key, then the
// colours, then the key's and the cells' bytes.
struct Header {
  std::uint32_t keyLength;
  std::uint16_t cells;
  // As many as the cells, or one for all of them.
  std::uint16_t colors;
  std::uint8_t flags;
};

Header* HeaderOf(std::byte* block) {
  return reinterpret_cast<Header*>(block);
}

const Header* HeaderOf(const std::byte* block) {
  return reinterpret_cast<const Header*>(block);
}

template <typename Byte>
auto* EndsOf(Byte* block) {
  using End = std::conditional_t<std::is_const_v<Byte>, const std::uint32_t, std::uint32_t>;
  static_assert(alignof(Header) == alignof(std::uint32_t) && alignof(Color) == alignof(std::uint32_t));
  return reinterpret_cast<End*>(block + sizeof(Header));
}

template <typename Byte>
auto* ColorsOf(Byte* block) {
  using Colors = std::conditional_t<std::is_const_v<Byte>, const Color, Color>;
  return reinterpret_cast<Colors*>(EndsOf(block) + HeaderOf(block)->cells);
}

constexpr std::size_t TextOffset(std::size_t cells, std::size_t colors) {
  return sizeof(Header) + cells * sizeof(std::uint32_t) + colors * sizeof(Color);
}

const char* TextOf(const std::byte* block) {
  const Header& header = *HeaderOf(block);
  return reinterpret_cast<const char*>(block) + TextOffset(header.cells, header.colors);
}

std::string_view KeyOf(const std::byte* block) {
  return {TextOf(block), HeaderOf(block)->keyLength};
}

std::string_view CellOf(const std::byte* block, std::size_t cell) {
  const Header& header = *HeaderOf(block);
  if (cell >= header.cells) return {};
  const std::uint32_t* ends = EndsOf(block);
  const std::uint32_t begin = cell == 0 ? 0 : ends[cell - 1];
  return {TextOf(block) + header.keyLength + begin, ends[cell] - begin};
}

Color ColorOf(const std::byte* block, std::size_t cell) {
  const Header& header = *HeaderOf(block);
  return ColorsOf(block)[cell < header.colors ? cell : 0];
}

base::Error TooManyCells() {
  return base::Error(base::ErrorNumber::kOverflow,
                     "A row can't have more than " + std::to_string(ListRows::kMostCells) + " cells");
}

}  // namespace

ListRows::Block ListRows::Pack(std::string_view key, std::span<const std::string_view> cells,
                               std::span<const Color> colors, std::uint8_t flags) {
  if (cells.size() > kMostCells) throw TooManyCells();
  constexpr std::size_t kMostText =
      std::numeric_limits<std::uint32_t>::max() - TextOffset(kMostCells, kMostCells);
  std::size_t text = 0;
  const auto count = [&text](std::string_view part) {
    if (part.size() > kMostText - text) {
      throw base::Error(base::ErrorNumber::kOverflow, "The texts of a row are too long");
    }
    text += part.size();
  };
  count(key);
  for (const std::string_view cell : cells) count(cell);
  const std::size_t textOffset = TextOffset(cells.size(), colors.size());
  auto block = std::make_unique_for_overwrite<std::byte[]>(textOffset + text);
  *HeaderOf(block.get()) = {static_cast<std::uint32_t>(key.size()), static_cast<std::uint16_t>(cells.size()),
                            static_cast<std::uint16_t>(colors.size()), flags};
  std::uint32_t* ends = EndsOf(block.get());
  std::copy(colors.begin(), colors.end(), ColorsOf(block.get()));
  char* out = reinterpret_cast<char*>(block.get()) + textOffset;
  out += key.copy(out, key.size());
  std::uint32_t end = 0;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    out += cells[i].copy(out, cells[i].size());
    end += static_cast<std::uint32_t>(cells[i].size());
    ends[i] = end;
  }
  return block;
}

void ListRows::Add(std::string_view key, std::span<const std::string_view> cells, Color color) {
  if (Find(key)) {
    throw base::Error(base::ErrorNumber::kKeyTaken,
                      "This key is already associated with a row: \"" + std::string(key) + "\"");
  }
  Append(key, cells, color);
}

void ListRows::Append(std::string_view key, std::span<const std::string_view> cells, Color color) {
  // A row has its own text, if nothing else.
  const std::string_view empty;
  if (cells.empty()) cells = std::span(&empty, 1);
  rows_.push_back(Pack(key, cells, std::span(&color, 1), 0));
}

const std::byte* ListRows::At(std::size_t row) const {
  if (row >= rows_.size()) {
    throw base::Error(base::ErrorNumber::kSubscript, "There is no row " + std::to_string(row));
  }
  return rows_[row].get();
}

void ListRows::RemoveAt(std::size_t row) {
  At(row);
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row));
  ForgetIndex();
}

void ListRows::Clear() {
  rows_.clear();
  rows_.shrink_to_fit();
  ForgetIndex();
}

std::optional<std::size_t> ListRows::Find(std::string_view key) const {
  if (rows_.empty()) return std::nullopt;
  CatchUpIndex();
  const std::uint32_t entry = slots_[Slot(key)];
  if (entry == 0) return std::nullopt;
  return entry - 1;
}

std::string_view ListRows::Key(std::size_t row) const {
  return KeyOf(At(row));
}

std::size_t ListRows::CellCount(std::size_t row) const {
  return HeaderOf(At(row))->cells;
}

std::string_view ListRows::Cell(std::size_t row, std::size_t cell) const {
  return CellOf(At(row), cell);
}

ListRows::CellTexts ListRows::Cells(std::size_t row) const {
  const std::byte* const block = At(row);
  const std::span<const std::uint32_t> ends(EndsOf(block), HeaderOf(block)->cells);
  return {{TextOf(block) + HeaderOf(block)->keyLength, ends.back()}, ends};
}

void ListRows::SetCell(std::size_t row, std::size_t cell, std::string_view text) {
  if (cell >= kMostCells) throw TooManyCells();
  const std::size_t count = std::max(CellCount(row), cell + 1);
  std::vector<std::string_view> cells(count);
  std::vector<Color> colors(count);
  for (std::size_t i = 0; i < count; ++i) {
    cells[i] = i == cell ? text : Cell(row, i);
    colors[i] = CellColor(row, i);
  }
  Repack(row, cells, colors);
}

void ListRows::AddCell(std::size_t row, std::string_view text) {
  SetCell(row, CellCount(row), text);
}

Color ListRows::CellColor(std::size_t row, std::size_t cell) const {
  return ColorOf(At(row), cell);
}

void ListRows::SetCellColor(std::size_t row, std::size_t cell, Color color) {
  const std::byte* const block = At(row);
  const std::size_t count = HeaderOf(block)->cells;
  if (cell >= count || ColorOf(block, cell) == color) return;
  if (HeaderOf(block)->colors == count) {
    ColorsOf(rows_[row].get())[cell] = color;
    return;
  }
  std::vector<std::string_view> cells(count);
  for (std::size_t i = 0; i < count; ++i) cells[i] = CellOf(block, i);
  std::vector<Color> colors(count, ColorOf(block, 0));
  colors[cell] = color;
  Repack(row, cells, colors);
}

void ListRows::Repack(std::size_t row, std::span<const std::string_view> cells,
                      std::span<const Color> colors) {
  const bool oneColor =
      std::adjacent_find(colors.begin(), colors.end(), std::not_equal_to<>()) == colors.end();
  // The texts lie in the old block until the new one is made.
  rows_[row] = Pack(Key(row), cells, oneColor ? colors.first(1) : colors, HeaderOf(rows_[row].get())->flags);
}

bool ListRows::Flag(std::size_t row, std::uint8_t flag) const {
  return (HeaderOf(At(row))->flags & flag) != 0;
}

void ListRows::SetFlag(std::size_t row, std::uint8_t flag, bool on) {
  At(row);
  std::uint8_t& flags = HeaderOf(rows_[row].get())->flags;
  flags = static_cast<std::uint8_t>(on ? flags | flag : flags & ~flag);
}

void ListRows::Reorder(std::span<const std::uint32_t> order) {
  std::vector<bool> named(rows_.size());
  for (const std::uint32_t row : order) {
    if (row < named.size()) named[row] = true;
  }
  if (order.size() != rows_.size() || std::find(named.begin(), named.end(), false) != named.end()) {
    throw base::Error(base::ErrorNumber::kInvalidCall, "An order must name each row once");
  }
  std::vector<Block> ordered(rows_.size());
  for (std::size_t i = 0; i < order.size(); ++i) ordered[i] = std::move(rows_[order[i]]);
  rows_ = std::move(ordered);
  ForgetIndex();
}

std::size_t ListRows::Slot(std::string_view key) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = std::hash<std::string_view>{}(key)&mask;
  while (slots_[slot] != 0 && KeyOf(rows_[slots_[slot] - 1].get()) != key) slot = (slot + 1) & mask;
  return slot;
}

void ListRows::CatchUpIndex() const {
  if (slots_.size() < 2 * rows_.size()) {
    std::size_t size = 16;
    while (size < 2 * rows_.size()) size *= 2;
    slots_.assign(size, 0);
    indexed_ = 0;
  }
  for (; indexed_ < rows_.size(); ++indexed_) {
    slots_[Slot(KeyOf(rows_[indexed_].get()))] = static_cast<std::uint32_t>(indexed_ + 1);
  }
}

void ListRows::ForgetIndex() {
  slots_.clear();
  indexed_ = 0;
}

}  // namespace ui
