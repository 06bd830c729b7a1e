// Runs a fuzz target without libFuzzer, as a test: every file of the corpus directories, then
// mutations of them that are the same in every run. Arguments: the number of mutations,
// directories.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer chose the name
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;
using Input = std::vector<std::uint8_t>;
using Random = std::mt19937;

constexpr std::size_t a_largestInput = 16384;

Input read(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    Input input{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return input;
}

// In an order that does not depend on the file system, so that the mutations do not either.
std::vector<Input> readCorpus(const std::vector<fs::path>& directories)
{
    std::vector<fs::path> paths;
    for (const fs::path& directory : directories) {
        for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
            paths.push_back(entry.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<Input> corpus;
    std::transform(paths.begin(), paths.end(), std::back_inserter(corpus), read);
    return corpus;
}

// From 0 to `last`. std::uniform_int_distribution differs between standard libraries.
std::size_t upTo(std::size_t last, Random& random)
{
    return random() % (last + 1);
}

void overwrite(Input& input, Random& random)
{
    if (!input.empty()) {
        input[upTo(input.size() - 1, random)] = static_cast<std::uint8_t>(random());
    }
}

void flipBit(Input& input, Random& random)
{
    if (!input.empty()) {
        input[upTo(input.size() - 1, random)] ^= static_cast<std::uint8_t>(1U << (random() % 8));
    }
}

void remove(Input& input, Random& random)
{
    const std::size_t first = upTo(input.size(), random);
    const std::size_t count = std::min(upTo(16, random), input.size() - first);
    const auto begin = input.begin() + static_cast<std::ptrdiff_t>(first);
    input.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
}

void insertPiece(Input& input, const Input& source, Random& random)
{
    const std::size_t first = upTo(source.size(), random);
    const std::size_t count = std::min(upTo(32, random), source.size() - first);
    const Input piece(source.begin() + static_cast<std::ptrdiff_t>(first),
                      source.begin() + static_cast<std::ptrdiff_t>(first + count));
    const std::size_t place = upTo(input.size(), random);
    input.insert(input.begin() + static_cast<std::ptrdiff_t>(place), piece.begin(), piece.end());
}

Input mutate(const std::vector<Input>& corpus, Random& random)
{
    Input input = corpus[upTo(corpus.size() - 1, random)];
    for (std::size_t step = upTo(3, random) + 1; step > 0; --step) {
        switch (random() % 4) {
        case 0:
            overwrite(input, random);
            break;
        case 1:
            flipBit(input, random);
            break;
        case 2:
            remove(input, random);
            break;
        default:
            insertPiece(input, corpus[upTo(corpus.size() - 1, random)], random);
        }
    }
    input.resize(std::min(input.size(), a_largestInput));
    return input;
}

void run(const std::vector<Input>& corpus, int mutationCount)
{
    for (const Input& input : corpus) {
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    // NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): the same mutations in every run
    Random random(1);
    for (int i = 0; i < mutationCount; ++i) {
        const Input input = mutate(corpus, random);
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc < 3) {
            throw std::runtime_error("give a number of mutations and corpus directories");
        }
        const int mutationCount = std::stoi(argv[1]);
        const std::vector<Input> corpus = readCorpus({argv + 2, argv + argc});
        if (corpus.empty()) {
            throw std::runtime_error("there is nothing in the corpus");
        }
        run(corpus, mutationCount);
        std::cout << "ran " << corpus.size() << " files and " << mutationCount
                  << " mutations of them\n";
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
