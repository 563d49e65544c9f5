#include "UserNotifications/UNNotificationContentExtensionHost.h"

#include "Foundation/Dispatch/DispatchQueue.h"

#include <utility>

namespace platform {

struct UNNotificationContentExtensionHost::State : std::enable_shared_from_this<State> {
  using Option = UNNotificationContentExtensionResponseOption;
  using Controller = std::shared_ptr<UNNotificationContentExtension>;

  explicit State(Handlers functions) : handlers(std::move(functions)) {}

  template <typename Work>
  void onMain(Work work) {
    DispatchQueue::main().async([weak = weak_from_this(), work = std::move(work)]() mutable {
      if (const auto self = weak.lock()) work(*self);
    });
  }

  void present(UNNotification notification) {
    if (!controller) controller = handlers.makeController();
    shown = std::move(notification);
    ++presentation;
    Controller(controller)->didReceive(shown);
  }

  void respond(std::string actionIdentifier) {
    if (!controller) return;
    UNNotificationResponse response{.notification = shown,
                                    .actionIdentifier = std::move(actionIdentifier)};
    Controller(controller)->didReceive(response, answerTo(response));
  }

  UNNotificationContentExtension::CompletionHandler answerTo(UNNotificationResponse response) {
    // The extension keeps the handler, so the handler must not keep the extension.
    return [weak = weak_from_this(), to = presentation,
            pending = std::optional(std::move(response))](Option option) mutable {
      const auto self = weak.lock();
      if (!self || !pending) return;
      self->onMain([to, response = *std::exchange(pending, std::nullopt), option](State& state) {
        state.take(response, option, to);
      });
    };
  }

  void take(const UNNotificationResponse& response, Option option, int to) {
    if (handlers.didAnswer) handlers.didAnswer(option);
    if (option == Option::dismissAndForwardAction && handlers.forward) handlers.forward(response);
    // Another notification may be shown by now, also by the same extension.
    if (option != Option::doNotDismiss && to == presentation) controller.reset();
  }

  const Handlers handlers;
  Controller controller;
  UNNotification shown;
  int presentation = 0;  ///< Counts them: an answer dismisses only what it is an answer to.
};

UNNotificationContentExtensionHost::UNNotificationContentExtensionHost(Handlers handlers)
    : state_(std::make_shared<State>(std::move(handlers))) {}

void UNNotificationContentExtensionHost::present(UNNotification notification) {
  state_->onMain([notification = std::move(notification)](State& state) mutable {
    state.present(std::move(notification));
  });
}

void UNNotificationContentExtensionHost::respond(std::string actionIdentifier) {
  state_->onMain([identifier = std::move(actionIdentifier)](State& state) mutable {
    state.respond(std::move(identifier));
  });
}

std::shared_ptr<UNNotificationContentExtension> UNNotificationContentExtensionHost::controller()
    const {
  return state_->controller;
}

}  // namespace platform
