#include "host/session_table.h"

#include "host/secrets.h"

namespace ondrel {

PageSessionRef SessionTable::find(std::string_view id) {
  const std::lock_guard lock(mutex_);
  const auto found = sessions_.find(id);
  if (found == sessions_.end()) return nullptr;
  found->second->touch();
  return found->second;
}

JournalledSession SessionTable::findInJournal(std::string_view id,
                                              std::chrono::steady_clock::time_point moment,
                                              PageSessionRef& ousted) {
  if (!isRandomId(id)) return {};
  auto session = std::make_shared<PageSession>(surroundings_, std::string(id));
  if (!session->prepareRestoring()) return {};
  const std::lock_guard lock(mutex_);
  if (const auto found = sessions_.find(id); found != sessions_.end()) return {found->second};
  if (sessions_.size() >= most_) ousted = takeIdler(moment);
  if (sessions_.size() >= most_) return {nullptr, true};
  sessions_.emplace(id, session);
  return {session};
}

PageSessionRef SessionTable::takeIdler(std::chrono::steady_clock::time_point moment) {
  auto idler = sessions_.end();
  for (auto entry = sessions_.begin(); entry != sessions_.end(); ++entry) {
    const PageSession& session = *entry->second;
    if (session.hasWork() || session.lastUsed() > moment) continue;
    if (idler == sessions_.end() || session.lastUsed() < idler->second->lastUsed()) idler = entry;
  }
  if (idler == sessions_.end()) return nullptr;
  PageSessionRef session = idler->second;
  sessions_.erase(idler);
  return session;
}

PageSessionRef SessionTable::create(std::chrono::steady_clock::time_point moment, PageSessionRef& ousted) {
  auto session = std::make_shared<PageSession>(surroundings_, randomId());
  const std::lock_guard lock(mutex_);
  if (sessions_.size() >= most_) ousted = takeIdler(moment);
  if (sessions_.size() >= most_) return nullptr;
  sessions_.emplace(session->id(), session);
  return session;
}

void SessionTable::rename(const std::string& from, const PageSessionRef& session) {
  const std::lock_guard lock(mutex_);
  if (sessions_.erase(from) > 0) sessions_.emplace(session->id(), session);
}

void SessionTable::remove(const PageSessionRef& session) {
  const std::lock_guard lock(mutex_);
  std::erase_if(sessions_, [&](const auto& entry) { return entry.second == session; });
}

std::vector<PageSessionRef> SessionTable::takeIdle(std::chrono::steady_clock::time_point moment) {
  std::vector<PageSessionRef> idle;
  const std::lock_guard lock(mutex_);
  std::erase_if(sessions_, [&](const auto& entry) {
    const bool isIdle = entry.second->lastUsed() < moment;
    if (isIdle) idle.push_back(entry.second);
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
  for (const auto& entry : sessions_) bytes += entry.second->scriptMemory();
  return bytes;
}

}  // namespace ondrel
