// Goes through the lines of an edition and changes some.
#include "tools/edition/NextEdition.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "tools/edition/OfficialLines.h"

namespace edition {
namespace {

// Where the lines have their values, from 0.
constexpr std::size_t placeWidth = 5;
constexpr std::size_t streetKeyAt = 5, streetKeyWidth = 5, streetNameAt = 57, streetNameWidth = 50;
constexpr std::size_t codeAt[] = {42, 257}, lastAt[] = {53, 268};
constexpr std::size_t numberingAt = 47, codeWidth = 5, numberWidth = 4;

unsigned long numberAt(const std::string& line, std::size_t at, std::size_t width) {
    return std::strtoul(line.substr(at, width).c_str(), nullptr, 10);
}

void setNumber(std::string& line, std::size_t at, std::size_t width, unsigned long number) {
    const std::string digits = std::to_string(number);
    line.replace(at, width, std::string(width - digits.size(), '0') + digits);
}

/// Receives each line, with its number, and what is written instead.
using LineChange = std::function<void(std::uint64_t number, std::string line, std::ostream& output)>;

/// Lines without their ends; returns the path of the new file.
std::string rewrite(const std::string& file, const std::string& target, const LineChange& change) {
    std::ifstream input(file, std::ios::binary);
    std::ofstream output(target, std::ios::binary);
    std::uint64_t number = 0;
    for (std::string line; std::getline(input, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        change(++number, std::move(line), output);
    }
    output.close();
    if (!output || number == 0) {
        throw std::runtime_error(target + " cannot be written");
    }
    return target;
}

void put(std::ostream& output, const std::string& line) { output << line << "\r\n"; }

/// Another one of the same province.
void changeCode(std::string& line) {
    const unsigned long code = numberAt(line, codeAt[0], codeWidth);
    const unsigned long other = code % 1000 < 999 ? code + 1 : code - 1;
    for (const std::size_t at : codeAt) {
        setNumber(line, at, codeWidth, other);
    }
}

void changeLast(std::string& line) {
    const unsigned long last = numberAt(line, lastAt[0], numberWidth);
    if (line[numberingAt] != '0' && last < 9990) {
        for (const std::size_t at : lastAt) {
            setNumber(line, at, numberWidth, last + 2);
        }
    }
}

/// The files of one edition made into those of the next one.
class Following {
public:
    Following(const Files& before, std::string folder, unsigned changedEvery)
        : before_(before), folder_(std::move(folder)), changedEvery_(changedEvery) {}

    Files write() {
        writeStreets();
        writeStretches();
        files_.pseudoStreets = copy(before_.pseudoStreets, "PSEU");
        files_.units = copy(before_.units, "UP");
        files_.municipalities = folder_ + "/municipios.csv";
        std::filesystem::copy_file(before_.municipalities, files_.municipalities);
        return files_;
    }

private:
    [[nodiscard]] std::string nameOf(const char* kind) const {
        return folder_ + '/' + kind + ".D251231.G260105";
    }

    std::string copy(const std::string& file, const char* kind) const {
        std::filesystem::copy_file(file, nameOf(kind));
        return nameOf(kind);
    }

    void writeStreets() {
        const auto change = [this](std::uint64_t number, std::string line, std::ostream& output) {
            if (number % changedEvery_ == 0) {
                put(output, newStreet(line, "NUEVA " + std::to_string(number)));
                line.replace(
                    streetNameAt, streetNameWidth,
                    ("OTRA " + line.substr(streetNameAt, streetNameWidth)).substr(0, streetNameWidth));
                files_.streetLines += 1;
            }
            put(output, line);
            files_.streetLines += 1;
        };
        files_.streets = rewrite(before_.streets, nameOf("VIAS"), change);
    }

    /// The line of a street beside another one; its numbers come to the end of the stretches.
    std::string newStreet(const std::string& beside, const std::string& name) {
        StretchText stretch;
        stretch.place = static_cast<std::uint32_t>(numberAt(beside, 0, placeWidth));
        stretch.street =
            static_cast<std::uint32_t>(90'000 + numberAt(beside, streetKeyAt, streetKeyWidth) % 10'000);
        stretch.postalCode = stretch.place / 1000 * 1000 + 1;
        stretch.first = 1;
        stretch.last = 9;
        stretch.streetName = name;
        added_.push_back(stretch);
        return streetLine(stretch.place, stretch.street, "CALLE", name);
    }

    void writeStretches() {
        const auto change = [this](std::uint64_t number, std::string line, std::ostream& output) {
            if (number % changedEvery_ == 0) {
                const std::uint64_t turn = number / changedEvery_ % 3;
                if (turn == 0) {
                    return;
                }
                turn == 1 ? changeCode(line) : changeLast(line);
            }
            put(output, line);
            files_.stretchLines += 1;
        };
        files_.stretches = rewrite(before_.stretches, nameOf("TRAM"), change);
        std::ofstream more(files_.stretches, std::ios::binary | std::ios::app);
        for (const StretchText& stretch : added_) {
            put(more, lineOf(stretch));
            files_.stretchLines += 1;
        }
    }

    const Files& before_;
    std::string folder_;
    unsigned changedEvery_;
    Files files_;
    std::vector<StretchText> added_;
};

} // namespace

Files writeNextEdition(const Files& before, const std::string& folder, unsigned changedEvery) {
    return Following(before, folder, changedEvery).write();
}

} // namespace edition
