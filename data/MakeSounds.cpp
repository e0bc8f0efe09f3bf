// Writes the program's own sounds: short sine tones with soft edges, as
// 16-bit mono WAV files. Run at build time: MakeSounds <folder>.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int kRate = 22050;
constexpr double kPi = 3.14159265358979323846;

struct Tone {
    double hertz;
    double seconds;
    double pauseAfter;
};

void Put16(std::ofstream& out, std::uint16_t v) {
    const char b[2] = {char(v & 0xff), char(v >> 8)};
    out.write(b, 2);
}

void Put32(std::ofstream& out, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out.put(char((v >> (8 * i)) & 0xff));
}

std::vector<std::int16_t> Render(const std::vector<Tone>& tones, double decay) {
    std::vector<std::int16_t> samples;
    for (const Tone& t : tones) {
        const int n = int(t.seconds * kRate);
        for (int i = 0; i < n; ++i) {
            const double at = double(i) / kRate;
            // A few milliseconds of fade at both ends keep the tone from clicking.
            const double edge = std::min({1.0, at / 0.005, (t.seconds - at) / 0.005});
            const double level = 0.45 * edge * std::exp(-decay * at);
            samples.push_back(std::int16_t(32767 * level * std::sin(2 * kPi * t.hertz * at)));
        }
        samples.insert(samples.end(), std::size_t(t.pauseAfter * kRate), 0);
    }
    return samples;
}

bool Write(const std::string& path, const std::vector<std::int16_t>& samples) {
    std::ofstream out(path, std::ios::binary);
    const std::uint32_t bytes = std::uint32_t(samples.size() * 2);
    out.write("RIFF", 4);
    Put32(out, 36 + bytes);
    out.write("WAVEfmt ", 8);
    Put32(out, 16);
    Put16(out, 1); // PCM
    Put16(out, 1); // mono
    Put32(out, kRate);
    Put32(out, kRate * 2);
    Put16(out, 2);
    Put16(out, 16);
    out.write("data", 4);
    Put32(out, bytes);
    for (std::int16_t s : samples)
        Put16(out, std::uint16_t(s));
    return bool(out);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: MakeSounds <folder>\n");
        return 2;
    }
    const std::string folder = argv[1];
    const bool ok =
        Write(folder + "/Error.wav", Render({{440, 0.12, 0.05}, {311, 0.22, 0}}, 2.0)) &&
        Write(folder + "/NewMail.wav",
              Render({{659.3, 0.14, 0.02}, {880, 0.16, 0.02}, {1318.5, 0.3, 0}}, 4.0));
    return ok ? 0 : 1;
}
