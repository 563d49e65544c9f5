#include "Desktop/NotificationServer.h"

#include "Foundation/Process/Environment.h"

#include <algorithm>
#include <utility>

namespace platform {
namespace {

constexpr const char* defaultKey = "default";

/// "done.17" from "done": an answer to an earlier form of a notification is told apart by it.
std::string withNonce(const std::string& key, const std::string& nonce) {
  return key + "." + nonce;
}

DesktopNotification withNonces(DesktopNotification notification, const std::string& nonce) {
  for (auto& action : notification.actions) action.key = withNonce(action.key, nonce);
  return notification;
}

/// The key that the program knows, if that form of the notification offered it.
std::optional<std::string> offered(const DesktopNotification& notification,
                                   const std::string& nonce, const std::string& invoked) {
  if (invoked == defaultKey) {
    if (notification.defaultAction) return notification.defaultAction->key;
    return std::nullopt;
  }
  for (const auto& action : notification.actions) {
    if (withNonce(action.key, nonce) == invoked) return action.key;
  }
  return std::nullopt;
}

bool isNotReady(const BusProblem& problem) {
  return problem.name.ends_with(".UnknownObject") || problem.name.ends_with(".UnknownMethod") ||
         problem.name.ends_with(".UnknownInterface");
}

}  // namespace

NotificationBus::Signals NotificationServer::signals() {
  return {.ownerChanged = [this](const std::string& owner) { ownerChanged(owner); },
          .invoked =
              [this](const std::string& sender, std::uint32_t id, const std::string& key) {
                take(sender, id, [this, id, key] { invoked(id, key); });
              },
          .replied =
              [this](const std::string& sender, std::uint32_t id, const std::string& text) {
                take(sender, id, [this, id, text] { replied(id, text); });
              },
          .token =
              [this](const std::string& sender, std::uint32_t id, const std::string& token) {
                if (isOurs(sender) && tokens_.size() < 100) tokens_[id] = token;
              },
          .closed =
              [this](const std::string& sender, std::uint32_t id, std::uint32_t reason) {
                take(sender, id, [this, id, reason] { closed(id, reason); });
              },
          .inhibited =
              [this](bool isInhibited) {
                if (!info_ || std::exchange(info_->isInhibited, isInhibited) == isInhibited) return;
                if (handlers_.inhibitionChanged) handlers_.inhibitionChanged();
              },
          .sleep = nullptr,
          .lost = nullptr};
}

void NotificationServer::ownerChanged(const std::string& owner) {
  if (owner == owner_) return;
  const bool hadServer = info_.has_value();
  owner_ = owner;
  info_.reset();
  posts_.clear();
  formers_.clear();
  early_.clear();
  tokens_.clear();
  backOffs_.clear();
  retry_.invalidate();
  if (hadServer) handlers_.gone();
  if (!owner_.empty()) askServer(/*isNew=*/true, retries);
}

void NotificationServer::lookAgain() {
  if (info_) askServer(/*isNew=*/false, 0);
}

/// Some take their name before they can answer.
void NotificationServer::askServer(bool isNew, int triesLeft) {
  bus_->getServer([this, isNew, triesLeft, asked = owner_](const auto& answer) {
    if (asked != owner_ || owner_.empty()) return;
    if (answer) return serverKnown(*answer, isNew);
    if (triesLeft == 0) return;
    retry_ = NSTimer::scheduled(retryDelay, false,
                                [this, isNew, triesLeft] { askServer(isNew, triesLeft - 1); });
  });
}

void NotificationServer::serverKnown(NotificationServerInfo info, bool isNew) {
  const bool isChanged = info_ != info;
  const bool wasInhibited = info_ && info_->isInhibited.value_or(false);
  info_ = std::move(info);
  if (isNew || isChanged) handlers_.arrived(isNew);
  const bool isInhibited = info_->isInhibited.value_or(false);
  if (!isNew && wasInhibited != isInhibited && handlers_.inhibitionChanged) {
    handlers_.inhibitionChanged();
  }
}

void NotificationServer::show(const std::string& key, DesktopNotification notification,
                              bool isQuiet) {
  if (!info_) return;
  Post& post = posts_[key];
  post.notification = std::move(notification);
  post.isUnwanted = false;
  if (isQuiet && post.id != 0) post.notification.isSilent = true;
  if (post.isPending) {
    post.isStale = true;
    return;
  }
  if (!isQuiet && post.id != 0) bus_->close(std::exchange(post.id, 0));
  this->post(key);
}

void NotificationServer::post(const std::string& key) {
  Post& post = posts_.at(key);
  post.nonce = std::to_string(++nonces_);
  post.isPending = true;
  post.isStale = false;
  auto notification = withNonces(post.notification, post.nonce);
  notification.replaces = post.id;
  notification.tag = key;
  bus_->notify(NotifyCall::of(notification, sender_, *info_),
               [this, key, nonce = post.nonce, asked = owner_](const auto& answer) {
                 if (asked != owner_) return;
                 if (answer) {
                   posted(key, nonce, *answer);
                 } else {
                   refused(key, nonce, answer.error());
                 }
               });
}

void NotificationServer::posted(const std::string& key, const std::string& nonce,
                                std::uint32_t id) {
  const auto found = posts_.find(key);
  if (found == posts_.end() || found->second.nonce != nonce) return;
  Post& post = found->second;
  post.isPending = false;
  if (post.isUnwanted) {
    posts_.erase(found);
    if (id != 0) bus_->close(id);
    return replayEarly();
  }
  if (id == 0) {
    posts_.erase(found);
    handlers_.closed(key, Closed::other);
    return replayEarly();
  }
  // Another notification of ours had it: the server gives identifiers out again.
  std::erase_if(posts_,
                [&](const auto& other) { return other.first != key && other.second.id == id; });
  formers_.erase(id);
  if (post.id != 0 && post.id != id) bus_->close(post.id);
  post.id = id;
  if (handlers_.shown) handlers_.shown(key, id);
  if (post.isStale) this->post(key);
  replayEarly();
}

void NotificationServer::refused(const std::string& key, const std::string& nonce,
                                 const BusProblem& problem) {
  const auto found = posts_.find(key);
  if (found == posts_.end() || found->second.nonce != nonce) return;
  Post& post = found->second;
  post.isPending = false;
  if (post.isUnwanted) {
    posts_.erase(found);
    return;
  }
  const TimeInterval delay = isNotReady(problem) ? retryDelay : backOff;
  backOffs_[key] = NSTimer::scheduled(delay, false, [this, key] {
    const auto again = posts_.find(key);
    if (again != posts_.end() && !again->second.isPending) this->post(key);
  });
}

void NotificationServer::withdraw(const std::string& key) {
  backOffs_.erase(key);
  const auto found = posts_.find(key);
  if (found == posts_.end()) return;
  if (found->second.id != 0 && bus_ != nullptr) bus_->close(found->second.id);
  if (found->second.isPending) {
    found->second.isUnwanted = true;
  } else {
    posts_.erase(found);
  }
}

void NotificationServer::withdrawAll() {
  std::vector<std::string> keys;
  for (const auto& [key, post] : posts_) keys.push_back(key);
  for (const auto& key : keys) withdraw(key);
  if (bus_ != nullptr && !keys.empty()) bus_->flush();
}

std::map<std::string, NotificationServer::Post>::iterator NotificationServer::postOf(
    std::uint32_t id) {
  return std::ranges::find_if(posts_, [&](const auto& post) { return post.second.id == id; });
}

bool NotificationServer::awaitsAnswer() const {
  return std::ranges::any_of(posts_, [](const auto& post) { return post.second.isPending; });
}

void NotificationServer::take(const std::string& sender, std::uint32_t id,
                              std::function<void()> work) {
  if (!isOurs(sender)) return;
  if (postOf(id) != posts_.end() || formers_.contains(id)) return work();
  if (awaitsAnswer()) early_.push_back({id, std::move(work)});
}

void NotificationServer::replayEarly() {
  for (Early& early : std::exchange(early_, {})) {
    if (postOf(early.id) != posts_.end() || formers_.contains(early.id)) {
      early.signal();
    } else if (awaitsAnswer()) {
      early_.push_back(std::move(early));
    }
  }
}

void NotificationServer::invoked(std::uint32_t id, const std::string& invokedKey) {
  const std::string token = tokens_.contains(id) ? tokens_.extract(id).mapped() : "";
  if (const auto post = postOf(id); post != posts_.end()) {
    const auto action = offered(post->second.notification, post->second.nonce, invokedKey);
    if (!action) return;
    const std::string key = post->first;
    return handlers_.answered(key, *action, token);
  }
  const auto former = formers_.find(id);
  if (former == formers_.end() || former->second.until < Environment::current().mediaTime()) return;
  const auto action =
      offered({.title = {}, .actions = former->second.actions}, former->second.nonce, invokedKey);
  if (!action) return;
  const std::string key = former->second.key;
  formers_.erase(former);
  handlers_.answered(key, *action, token);
}

void NotificationServer::replied(std::uint32_t id, const std::string& text) {
  const auto post = postOf(id);
  if (post == posts_.end() || !post->second.notification.reply) return;
  handlers_.replied(std::string(post->first), text);
}

void NotificationServer::closed(std::uint32_t id, std::uint32_t reason) {
  const auto post = postOf(id);
  if (post == posts_.end()) return;
  const std::string key = post->first;
  const double now = Environment::current().mediaTime();
  std::erase_if(formers_, [&](const auto& former) { return former.second.until < now; });
  formers_[id] = {.key = key,
                  .nonce = post->second.nonce,
                  .actions = post->second.notification.actions,
                  .until = now + afterClosing};
  if (post->second.isPending) {
    post->second.id = 0;  // what replaces it is on its way
    return;
  }
  posts_.erase(post);
  constexpr std::uint32_t last = static_cast<std::uint32_t>(Closed::other);
  handlers_.closed(key,
                   reason >= 1 && reason <= last ? static_cast<Closed>(reason) : Closed::other);
}

}  // namespace platform
