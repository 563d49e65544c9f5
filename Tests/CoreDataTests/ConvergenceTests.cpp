#include "Support/Library.h"

#include <algorithm>
#include <numeric>
#include <set>

#include <gmock/gmock.h>

namespace platform {
namespace {

using ::testing::Each;
using ::testing::IsEmpty;

template <typename T>
std::shared_ptr<T> find(Context& context, const Predicate<T>& predicate) {
  return context.fetch<T>(NSFetchRequest::of<T>(predicate)).value().front();
}

/// Two authors with a book each, a book of nobody, two tags.
void fill(Context& context) {
  for (const char* name : {"Jane", "Mary"}) {
    const auto author = context.insert<AuthorEntity>();
    author->setValue(AuthorEntity::name, name);
    newBook(context, name[0] == 'J' ? "Emma" : "Maria")->setValue(BookEntity::author, author);
  }
  newBook(context, "Stray");
  for (const char* word : {"x", "y"}) {
    context.insert<TagEntity>()->setValue(TagEntity::word, word);
  }
  find(context, "Stray")->add(BookEntity::tags, find(context, TagEntity::word == "x"));
  expectSaved(context);
}

/// What each of the concurrent contexts does before any of them saves.
using Change = void (*)(Context&);
constexpr Change changes[] = {
    [](Context& context) {
      context.deleteObject(*find(context, AuthorEntity::name == "Jane"));
      find(context, "Maria")->setValue(BookEntity::day, 1);
    },
    [](Context& context) {
      find(context, "Emma")->setValue(BookEntity::day, 2);
      find(context, "Maria")->setValue(BookEntity::copies, 2);
      find(context, "Stray")->add(BookEntity::tags, find(context, TagEntity::word == "y"));
    },
    [](Context& context) {
      const auto late = newBook(context, "Late");
      late->setValue(BookEntity::author, find(context, AuthorEntity::name == "Jane"));
      const auto cover = context.insert<CoverEntity>();
      cover->setValue(CoverEntity::book, late);
      find(context, "Emma")
          ->setValue(BookEntity::author, find(context, AuthorEntity::name == "Mary"));
    },
    [](Context& context) {
      find(context, "Stray")
          ->setValue(BookEntity::author, find(context, AuthorEntity::name == "Jane"));
      find(context, "Maria")->setValue(BookEntity::rating, 3);
    },
    [](Context& context) {
      context.deleteObject(*find(context, TagEntity::word == "y"));
      find(context, "Maria")->setValue(BookEntity::sequel, find(context, "Emma"));
    },
    [](Context& context) {
      find(context, "Maria")->add(BookEntity::tags, find(context, TagEntity::word == "x"));
      find(context, "Maria")->add(BookEntity::tags, find(context, TagEntity::word == "y"));
      find(context, "Emma")->add(BookEntity::tags, find(context, TagEntity::word == "x"));
    },
};
constexpr std::size_t savers = std::size(changes);

/// All that a context sees, keys left out.
std::string everything(Context& context) {
  std::string text;
  const auto name = [](const auto& object, const auto& attribute) {
    return object != nullptr ? object->value(attribute).value_or("-") : "-";
  };
  const auto books = context.fetch<BookEntity>(bookRequest());
  for (const auto& book : *books) {
    text += name(book, BookEntity::title) + ":";
    for (const auto& [key, value] :
         {std::pair{"day", book->value(BookEntity::day)},
          std::pair{"copies", static_cast<int>(book->value(BookEntity::copies))},
          std::pair{"rating", static_cast<int>(book->value(BookEntity::rating).value_or(0))}}) {
      text += std::string(" ") + key + " " + std::to_string(value);
    }
    text += " by " + name(book->value(BookEntity::author), AuthorEntity::name);
    text += " before " + name(book->value(BookEntity::sequel), BookEntity::title);
    for (const auto& tag : book->value(BookEntity::tags)) text += " #" + name(tag, TagEntity::word);
    text += "\n";
  }
  for (const char* entity : {"Author", "Cover", "Tag"}) {
    text += std::to_string(context.count(NSFetchRequest(entity)).value()) + " " + entity + "\n";
  }
  return text;
}

TEST(Convergence, EveryOrderOfConcurrentSavesEndsAlike) {
  VirtualEnvironment environment;
  std::vector<std::size_t> order(savers);
  std::iota(order.begin(), order.end(), 0U);
  do {
    Library library(NSPersistentStoreDescription::inMemory());
    fill(*library.viewContext());
    std::vector<std::shared_ptr<Context>> contexts;
    for (const Change change : changes) {
      contexts.push_back(library.newBackgroundContext());
      contexts.back()->performAndWait([&] { change(*contexts.back()); });
    }
    for (const std::size_t i : order) {
      contexts[i]->performAndWait([&] { expectSaved(*contexts[i]); });
    }
    contexts.push_back(library.viewContext());
    const auto history = library.viewContext()->execute({.after = Date::distantPast()});
    for (const auto& transaction : history->transactions) {
      Context::mergeChangesFromRemoteContextSave(transaction.objectIDNotification().userInfo,
                                                 contexts);
    }
    for (const auto& context : contexts) {
      ASSERT_EQ(context->performAndWait([&] { return everything(*context); }),
                "Maria: day 1 copies 2 rating 3 by Mary before - #x\n"
                "1 Author\n0 Cover\n1 Tag\n")
          << "order " << ::testing::PrintToString(order);
    }
    ASSERT_THAT(library.persistentStoreCoordinator()->check().value(), IsEmpty());
  } while (std::ranges::next_permutation(order).found);
}

}  // namespace
}  // namespace platform
