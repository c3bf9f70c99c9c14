// Deterministic stand-in for libFuzzer when the compiler has none: feeds every
// file of the seed corpus folder to the target, then a fixed number of seeded
// mutations of those seeds (bit flips, truncations, splices, byte repeats).
// The same binary and corpus always run the same inputs. An input that
// aborts the target is written to the file crash-input in the current
// folder, for libFuzzer's or the driver's replay.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

// The input being run, for the abort handler.
const std::string* g_current = nullptr;

void writeCurrentInput(int signal) {
    if (g_current != nullptr) {
        const int file = ::open("crash-input", O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (file >= 0) {
            (void)!::write(file, g_current->data(), g_current->size());
            ::close(file);
        }
        static constexpr char kNote[] = "the failing input is in ./crash-input\n";
        (void)!::write(2, kNote, sizeof kNote - 1);
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

std::vector<std::string> readCorpus(const std::filesystem::path& folder) {
    std::vector<std::string> seeds;
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(folder)) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.is_regular_file()) {
                files.push_back(entry.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        std::ifstream in(file, std::ios::binary);
        seeds.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    return seeds;
}

std::string mutate(const std::vector<std::string>& seeds, std::mt19937& rng) {
    std::string s = seeds[rng() % seeds.size()];
    const int rounds = 1 + static_cast<int>(rng() % 4);
    for (int r = 0; r < rounds; ++r) {
        switch (rng() % 5) {
            case 0:  // flip a bit
                if (!s.empty()) {
                    s[rng() % s.size()] ^= static_cast<char>(1U << (rng() % 8));
                }
                break;
            case 1:  // truncate
                if (!s.empty()) {
                    s.resize(rng() % s.size());
                }
                break;
            case 2: {  // splice in a piece of another seed
                const std::string& other = seeds[rng() % seeds.size()];
                if (!other.empty()) {
                    const std::size_t from = rng() % other.size();
                    const std::size_t len = std::min<std::size_t>(rng() % 64, other.size() - from);
                    s.insert(s.empty() ? 0 : rng() % s.size(), other.substr(from, len));
                }
                break;
            }
            case 3:  // repeat a byte
                if (!s.empty()) {
                    const std::size_t at = rng() % s.size();
                    s.insert(at, rng() % 16, s[at]);
                }
                break;
            default:  // insert an interesting character
                s.insert(s.empty() ? 0 : rng() % s.size(), 1, "<>&'\"=/;\0\xff"[rng() % 10]);
                break;
        }
    }
    return s;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER [MUTATIONS]\n", argv[0]);
        return 2;
    }
    std::vector<std::string> seeds = readCorpus(argv[1]);
    if (seeds.empty()) {
        seeds.emplace_back();
    }
    const long mutations = argc > 2 ? std::stol(argv[2]) : 3000;
    std::signal(SIGABRT, &writeCurrentInput);
    for (const auto& seed : seeds) {
        g_current = &seed;
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(seed.data()), seed.size());
    }
    std::mt19937 rng(20261121U);
    for (long i = 0; i < mutations; ++i) {
        const std::string input = mutate(seeds, rng);
        g_current = &input;
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    }
    std::printf("%zu seeds and %ld mutations ran\n", seeds.size(), mutations);
    return 0;
}
