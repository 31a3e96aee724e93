#include "ui/ListRows.h"

#include <algorithm>
#include <functional>
#include <type_traits>

#include "base/Error.h"

namespace ui {
namespace {

// A block: the header, then for each cell where its text ends and its colour, then the key's and the cells'
// bytes.
struct Header {
  std::uint32_t keyLength;
  std::uint16_t cells;
  std::uint8_t flags;
};

struct CellEntry {
  std::uint32_t end;  // counted from the end of the key
  Color color;
};

Header* HeaderOf(char* block) {
  return reinterpret_cast<Header*>(block);
}

const Header* HeaderOf(const char* block) {
  return reinterpret_cast<const Header*>(block);
}

template <typename Char>
auto* EntriesOf(Char* block) {
  using Entry = std::conditional_t<std::is_const_v<Char>, const CellEntry, CellEntry>;
  return reinterpret_cast<Entry*>(block + sizeof(Header));
}

const char* TextOf(const char* block) {
  return block + sizeof(Header) + HeaderOf(block)->cells * sizeof(CellEntry);
}

std::string_view KeyOf(const char* block) {
  return {TextOf(block), HeaderOf(block)->keyLength};
}

std::string_view CellOf(const char* block, std::size_t cell) {
  const Header& header = *HeaderOf(block);
  if (cell >= header.cells) return {};
  const CellEntry* entries = EntriesOf(block);
  const std::uint32_t begin = cell == 0 ? 0 : entries[cell - 1].end;
  return {TextOf(block) + header.keyLength + begin, entries[cell].end - begin};
}

}  // namespace

ListRows::Block ListRows::Pack(std::string_view key, std::span<const std::string_view> cells,
                               std::span<const Color> colors, std::uint8_t flags) {
  std::size_t text = key.size();
  for (const std::string_view cell : cells) text += cell.size();
  const std::size_t size = sizeof(Header) + cells.size() * sizeof(CellEntry) + text;
  auto block = std::make_unique_for_overwrite<char[]>(size);
  *HeaderOf(block.get()) = {static_cast<std::uint32_t>(key.size()), static_cast<std::uint16_t>(cells.size()),
                            flags};
  CellEntry* entries = EntriesOf(block.get());
  char* out = block.get() + sizeof(Header) + cells.size() * sizeof(CellEntry);
  out = key.copy(out, key.size()) + out;
  std::uint32_t end = 0;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    out += cells[i].copy(out, cells[i].size());
    end += static_cast<std::uint32_t>(cells[i].size());
    entries[i] = {end, colors[i]};
  }
  return block;
}

void ListRows::Add(std::string_view key, std::span<const std::string_view> cells, Color color) {
  if (Find(key)) {
    throw base::Error(base::ErrorNumber::kKeyTaken,
                      "This key is already associated with a row: \"" + std::string(key) + "\"");
  }
  const std::vector<Color> colors(cells.size(), color);
  rows_.push_back(Pack(key, cells, colors, 0));
  if (2 * rows_.size() > slots_.size()) {
    Reindex();
  } else {
    IndexRow(rows_.size() - 1);
  }
}

void ListRows::RemoveAt(std::size_t row) {
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row));
  indexStale_ = true;
}

void ListRows::Clear() {
  rows_.clear();
  rows_.shrink_to_fit();
  slots_.clear();
  indexStale_ = false;
}

std::optional<std::size_t> ListRows::Find(std::string_view key) const {
  if (rows_.empty()) return std::nullopt;
  if (indexStale_) Reindex();
  const std::uint32_t entry = slots_[Slot(key)];
  if (entry == 0) return std::nullopt;
  return entry - 1;
}

std::string_view ListRows::Key(std::size_t row) const {
  return KeyOf(rows_[row].get());
}

std::size_t ListRows::CellCount(std::size_t row) const {
  return HeaderOf(rows_[row].get())->cells;
}

std::string_view ListRows::Cell(std::size_t row, std::size_t cell) const {
  return CellOf(rows_[row].get(), cell);
}

void ListRows::SetCell(std::size_t row, std::size_t cell, std::string_view text) {
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
  const char* block = rows_[row].get();
  const std::size_t count = HeaderOf(block)->cells;
  if (count == 0) return kDefaultColor;
  return EntriesOf(block)[cell < count ? cell : 0].color;
}

void ListRows::SetCellColor(std::size_t row, std::size_t cell, Color color) {
  if (cell < CellCount(row)) EntriesOf(rows_[row].get())[cell].color = color;
}

void ListRows::Repack(std::size_t row, std::span<const std::string_view> cells,
                      std::span<const Color> colors) {
  // The texts lie in the old block until the new one is made.
  rows_[row] = Pack(Key(row), cells, colors, HeaderOf(rows_[row].get())->flags);
}

bool ListRows::Flag(std::size_t row, std::uint8_t flag) const {
  return (HeaderOf(rows_[row].get())->flags & flag) != 0;
}

void ListRows::SetFlag(std::size_t row, std::uint8_t flag, bool on) {
  std::uint8_t& flags = HeaderOf(rows_[row].get())->flags;
  flags = static_cast<std::uint8_t>(on ? flags | flag : flags & ~flag);
}

void ListRows::Reorder(std::span<const std::uint32_t> order) {
  std::vector<Block> ordered(rows_.size());
  for (std::size_t i = 0; i < order.size(); ++i) ordered[i] = std::move(rows_[order[i]]);
  rows_ = std::move(ordered);
  indexStale_ = true;
}

std::size_t ListRows::Slot(std::string_view key) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = std::hash<std::string_view>{}(key)&mask;
  while (slots_[slot] != 0 && KeyOf(rows_[slots_[slot] - 1].get()) != key) slot = (slot + 1) & mask;
  return slot;
}

void ListRows::IndexRow(std::size_t row) const {
  slots_[Slot(Key(row))] = static_cast<std::uint32_t>(row + 1);
}

void ListRows::Reindex() const {
  std::size_t size = 16;
  while (size < 2 * rows_.size()) size *= 2;
  slots_.assign(size, 0);
  for (std::size_t row = 0; row < rows_.size(); ++row) IndexRow(row);
  indexStale_ = false;
}

}  // namespace ui
