#include "data/recordset/filter_cache.h"

#include <algorithm>
#include <cstring>

namespace ondrel {
namespace {

size_t literalEnd(std::string_view filter, size_t position, FilterWord word) {
  switch (word) {
    case FilterWord::Number:
      return numberEnd(filter, position);
    case FilterWord::Text:
      return quotedEnd(filter, position);
    default: {
      const bool opened = position < filter.size() && filter[position] == '#';
      const size_t end = opened ? filter.find('#', position + 1) : std::string_view::npos;
      return end == std::string_view::npos ? position : end + 1;
    }
  }
}

// The text with each literal replaced by a character that no filter has.
std::string shapeText(std::string_view filter, const std::vector<FilterToken>& tokens) {
  std::string shape;
  size_t copied = 0;
  for (const FilterToken& token : tokens) {
    if (!token.isLiteral()) continue;
    shape += filter.substr(copied, token.position - copied);
    shape += static_cast<char>(token.word);
    copied = token.position + token.text.size();
  }
  return shape += filter.substr(copied);
}

std::unique_ptr<FilterShape> makeShape(std::string_view filter, const std::vector<FilterToken>& tokens,
                                       const Table& table) {
  auto shape = std::make_unique<FilterShape>();
  size_t copied = 0;
  for (const FilterToken& token : tokens) {
    if (!token.isLiteral()) continue;
    shape->pieces.emplace_back(filter.substr(copied, token.position - copied));
    shape->literals.push_back(token.word);
    copied = token.position + token.text.size();
  }
  shape->pieces.emplace_back(filter.substr(copied));
  shape->expression = parseFilter(filter, tokens, table);
  return shape;
}

// Whether the text goes on with the piece: a few words compared in place, as pieces are short.
bool goesOn(std::string_view text, std::string_view piece) {
  constexpr size_t kWord = sizeof(std::uint64_t);
  if (text.size() < piece.size()) return false;
  const auto differ = [&](size_t position) {
    std::uint64_t here, there;
    std::memcpy(&here, text.data() + position, kWord);
    std::memcpy(&there, piece.data() + position, kWord);
    return here != there;
  };
  if (piece.size() < kWord) return std::equal(piece.begin(), piece.end(), text.begin());
  for (size_t position = 0; position + kWord < piece.size(); position += kWord)
    if (differ(position)) return false;
  return !differ(piece.size() - kWord);
}

size_t startHash(std::string_view filter) {
  std::uint64_t start = 0;
  if (filter.size() >= sizeof start)
    std::memcpy(&start, filter.data(), sizeof start);
  else
    for (const char c : filter) start = start << 8 | static_cast<unsigned char>(c);
  return (start * 0x9E3779B97F4A7C15) >> 59;
}

}  // namespace

bool FilterShape::matches(std::string_view filter, FilterLiterals& found) const {
  found.clear();
  size_t position = 0;
  for (size_t k = 0;; ++k) {
    const std::string& piece = pieces[k];
    if (!goesOn(filter.substr(position), piece)) return false;
    position += piece.size();
    if (k == literals.size()) return position == filter.size();
    const size_t end = literalEnd(filter, position, literals[k]);
    if (end == position) return false;
    found.add(position, end);
    position = end;
  }
}

const FilterShape& FilterCache::shapeOf(std::string_view filter, const Table& table, FilterLiterals& found) {
  const FilterShape*& latest = latest_[startHash(filter)];
  if (latest && latest->matches(filter, found)) return *latest;

  const std::vector<FilterToken> tokens = filterTokens(filter);
  found.clear();
  for (const FilterToken& token : tokens)
    if (token.isLiteral()) found.add(token.position, token.position + token.text.size());
  std::string text = shapeText(filter, tokens);
  auto known = shapes_.find(text);
  if (known == shapes_.end())
    known = shapes_.emplace(std::move(text), makeShape(filter, tokens, table)).first;
  latest = known->second.get();
  return *latest;
}

}  // namespace ondrel
