// A reading of a typed text, ready to be compared with names.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "suggest/ComparedWord.h"

namespace ambrel::suggest {

struct PreparedReading {
    std::uint16_t number = 0;               // of the reading
    std::vector<const ComparedWord*> words; // that count, and the last one if it is small
    bool isPlain = false;                   // one word as it was typed, and no small ones
    bool endsSmall = false;                 // the last of them is a small word
    std::vector<std::uint8_t> smallWords;   // bits of the other small words
    std::string joined;
    SlipCount joinedSlips{""};
    std::uint64_t pairs = 0, letterSet = 0; // of `joined`
    double letters = 0;                     // typed, as the measure of all prices
    bool isOpen = false;                    // more may follow
    bool hasAppended = false;               // something stands in brackets
    unsigned smallLetters = 0;              // of `joined`, in small words
    unsigned extra = 0;
};

/// All readings of a text, each word of it compared with the words of the view once.
class PreparedReadings {
public:
    PreparedReadings(const NameView& view, const std::vector<NameWord>& words,
                     const std::vector<TypedStreet::Reading>& readings);

    [[nodiscard]] const std::vector<PreparedReading>& readings() const { return readings_; }
    /// Whether a word of the names may be one of the text.
    [[nodiscard]] bool isNear(ViewWord word) const { return near_[word]; }

private:
    /// Which words of a reading are compared: those that count, and the last one in any case.
    [[nodiscard]] static std::vector<std::size_t> comparedIn(const std::vector<NameWord>& words,
                                                             const TypedStreet::Reading& reading);
    /// The word at a place, compared once whatever the number of readings.
    [[nodiscard]] const ComparedWord* compared(const NameWord& word, std::size_t place, bool mayBeBeginning);
    /// Gives a reading its words: those in these places, and what the others cost or say.
    void takeWords(PreparedReading& prepared, const std::vector<NameWord>& words,
                   const TypedStreet::Reading& reading, const std::vector<std::size_t>& places);
    [[nodiscard]] PreparedReading prepare(const std::vector<NameWord>& words,
                                          const TypedStreet::Reading& reading);

    const NameView& view_;
    std::vector<bool> near_;                        // by word of the view
    std::vector<ComparedWord> compared_;            // never grows beyond what is reserved
    std::vector<const ComparedWord*> whole_, open_; // by word of the text
    std::vector<PreparedReading> readings_;
};

} // namespace ambrel::suggest
