#include "data/recordset/filter_cache.h"

#include <algorithm>

#include "data/recordset/words.h"

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
                                       const TableColumns& table) {
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
  if (text.size() < piece.size()) return false;
  const auto differ = [&](size_t position, size_t count) {
    return loadWord(text.data() + position, count) != loadWord(piece.data() + position, count);
  };
  if (piece.size() < kWordBytes) return !differ(0, piece.size());
  for (size_t position = 0; position + kWordBytes < piece.size(); position += kWordBytes)
    if (differ(position, kWordBytes)) return false;
  return !differ(piece.size() - kWordBytes, kWordBytes);
}

size_t startHash(std::string_view filter) {
  return (loadWord(filter.data(), std::min(filter.size(), kWordBytes)) * 0x9E3779B97F4A7C15) >> 59;
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

const FilterShape& FilterCache::shapeOf(std::string_view filter, const TableColumns& table,
                                        FilterLiterals& found) {
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
