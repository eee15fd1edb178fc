#include "host/session_table.h"

#include <algorithm>

#include "host/secrets.h"

namespace ondrel {
namespace {

// Of places for those of one address who only look: a shop behind one address has its clerks there.
constexpr size_t kSmallestShare = 8;

}  // namespace

PageSessionRef SessionTable::find(std::string_view id) {
  const std::lock_guard lock(mutex_);
  const auto found = sessions_.find(id);
  if (found == sessions_.end()) return nullptr;
  found->second.session->touch();
  return found->second.session;
}

BegunSession SessionTable::findInJournal(std::string_view id, std::chrono::steady_clock::time_point moment,
                                         PageSessionRef& ousted) {
  if (!isRandomId(id)) return {};
  auto session = std::make_shared<PageSession>(context_, std::string(id));
  if (!session->prepareRestoring()) return {};
  const std::lock_guard lock(mutex_);
  if (const auto found = sessions_.find(id); found != sessions_.end()) return {found->second.session};
  if (sessions_.size() >= most_) ousted = takeIdler(moment);
  if (sessions_.size() >= most_) return {nullptr, true};
  sessions_.emplace(id, Entry{session, ""});
  return {session};
}

PageSessionRef SessionTable::takeIdler(std::chrono::steady_clock::time_point moment,
                                       const std::string* address) {
  auto idler = sessions_.end();
  for (auto entry = sessions_.begin(); entry != sessions_.end(); ++entry) {
    const PageSession& session = *entry->second.session;
    if (session.hasWork() || session.lastUsed() > moment || (address && entry->second.address != *address))
      continue;
    if (idler == sessions_.end() || session.lastUsed() < idler->second.session->lastUsed()) idler = entry;
  }
  if (idler == sessions_.end()) return nullptr;
  PageSessionRef session = idler->second.session;
  sessions_.erase(idler);
  return session;
}

// A browser may come back several times at once: the look-up and the beginning are one step.
BegunSession SessionTable::begin(const std::string& id, const std::string& address,
                                 std::chrono::steady_clock::time_point moment, PageSessionRef& ousted) {
  const std::lock_guard lock(mutex_);
  if (const auto found = sessions_.find(id); found != sessions_.end()) return {found->second.session};
  if (!visitors_.isOut(id)) return {};
  const auto ofAddress = std::ranges::count_if(sessions_, [&](const auto& entry) {
    return entry.second.address == address && !entry.second.session->hasWork();
  });
  if (static_cast<size_t>(ofAddress) >= std::max(kSmallestShare, most_ / 4))
    ousted = takeIdler(std::chrono::steady_clock::time_point::max(), &address);
  else if (sessions_.size() >= most_)
    ousted = takeIdler(moment);
  if (sessions_.size() >= most_) return {nullptr, true};
  visitors_.take(id);
  auto session = std::make_shared<PageSession>(context_, id);
  sessions_.emplace(id, Entry{session, address});
  return {session};
}

void SessionTable::rename(const std::string& from, const PageSessionRef& session) {
  const std::lock_guard lock(mutex_);
  auto entry = sessions_.extract(from);
  if (!entry) return;
  entry.key() = session->id();
  sessions_.insert(std::move(entry));
}

void SessionTable::remove(const PageSessionRef& session) {
  const std::lock_guard lock(mutex_);
  std::erase_if(sessions_, [&](const auto& entry) { return entry.second.session == session; });
}

std::vector<PageSessionRef> SessionTable::takeIdle(std::chrono::steady_clock::time_point moment) {
  std::vector<PageSessionRef> idle;
  const std::lock_guard lock(mutex_);
  std::erase_if(sessions_, [&](const auto& entry) {
    const bool isIdle = entry.second.session->lastUsed() < moment;
    if (isIdle) idle.push_back(entry.second.session);
    return isIdle;
  });
  return idle;
}

size_t SessionTable::size() const {
  const std::lock_guard lock(mutex_);
  return sessions_.size();
}

size_t SessionTable::scriptMemory() const {
  const std::lock_guard lock(mutex_);
  size_t bytes = 0;
  for (const auto& entry : sessions_) bytes += entry.second.session->scriptMemory();
  return bytes;
}

}  // namespace ondrel
