// Packing folded names.
#include "suggest/NamePool.h"

#include <algorithm>

#include "suggest/Letters.h"

namespace ambrel::suggest {
namespace {

constexpr std::size_t longest = 255;

/// Marks a street type at the beginning of a name, if more follows.
void markType(std::vector<NameWord>& words) {
    if (words.size() < 2 || words.front().role != WordRole::Plain) {
        return;
    }
    const WordEntry* entry = WordLists::builtIn().find(words.front().literal);
    if (entry != nullptr && entry->types != 0 &&
        std::any_of(words.begin() + 1, words.end(), [](const NameWord& word) {
            return word.role == WordRole::Plain || word.role == WordRole::Title;
        })) {
        words.front().role = WordRole::Type;
    }
}

} // namespace

std::uint8_t smallWordBits(std::string_view folded) {
    unsigned hash = 0;
    for (const char letter : folded) {
        hash = hash * 31 + letterNumber(letter);
    }
    return static_cast<std::uint8_t>(1U << (hash % 8));
}

std::uint64_t pairBits(std::string_view folded) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i + 1 < folded.size(); ++i) {
        bits |= std::uint64_t{1} << ((letterNumber(folded[i]) * 23 + letterNumber(folded[i + 1]) * 5) % 64);
    }
    return bits;
}

std::uint64_t letterBits(std::string_view folded) {
    std::uint64_t bits = 0;
    for (const char letter : folded) {
        bits |= std::uint64_t{1} << letterNumber(letter);
    }
    return bits;
}

NameNumber NamePool::add(std::string_view stored) {
    stored = stored.substr(0, longest);
    std::vector<NameWord> words = foldName(stored);
    markType(words);
    Name name{};
    name.stored = static_cast<std::uint32_t>(letters_.size());
    name.storedLength = static_cast<std::uint8_t>(stored.size());
    letters_ += stored;
    const std::string whole = ambrel::suggest::joined(words, 0, words.size());
    name.joined = static_cast<std::uint32_t>(letters_.size());
    name.joinedLength = static_cast<std::uint8_t>(std::min(whole.size(), longest));
    letters_ += whole;
    name.pairs = pairBits(whole);
    name.letters = letterBits(whole);
    name.uses = static_cast<std::uint32_t>(uses_.size());
    for (const NameWord& word : words) {
        if (counts(word.role)) {
            uses_.emplace_back(pool(word), word.role);
            ++name.useCount;
        } else {
            name.smallWords |= smallWordBits(word.literal);
        }
    }
    names_.push_back(name);
    return static_cast<NameNumber>(names_.size() - 1);
}

WordNumber NamePool::pool(const NameWord& word) {
    const auto next = static_cast<WordNumber>(words_.size());
    const auto [known, isNew] = numbers_.try_emplace(word.text, next);
    if (!isNew) {
        return known->second;
    }
    PooledWord pooled{};
    pooled.text = static_cast<std::uint32_t>(letters_.size());
    pooled.length = static_cast<std::uint8_t>(word.text.size());
    letters_ += word.text;
    const std::string sound = soundOf(word.text);
    pooled.sound = static_cast<std::uint32_t>(letters_.size());
    pooled.soundLength = static_cast<std::uint8_t>(sound.size());
    letters_ += sound;
    pooled.number = word.number;
    pooled.letters = letterBits(sound);
    words_.push_back(pooled);
    return next;
}

std::string_view NamePool::stored(NameNumber name) const {
    return {&letters_[names_[name].stored], names_[name].storedLength};
}

std::string_view NamePool::joined(NameNumber name) const {
    return {&letters_[names_[name].joined], names_[name].joinedLength};
}

WordNumber NamePool::find(std::string_view text) const {
    const auto found = numbers_.find(text);
    return found == numbers_.end() ? static_cast<WordNumber>(words_.size()) : found->second;
}

void NamePool::finish() {
    letters_.shrink_to_fit();
    words_.shrink_to_fit();
    names_.shrink_to_fit();
    uses_.shrink_to_fit();
}

std::size_t NamePool::bytes() const {
    constexpr std::size_t perEntry = sizeof(std::pair<std::string, WordNumber>) + 3 * sizeof(void*);
    return letters_.capacity() + words_.capacity() * sizeof(PooledWord) + names_.capacity() * sizeof(Name) +
           uses_.capacity() * sizeof(WordUse) + numbers_.size() * perEntry;
}

} // namespace ambrel::suggest
