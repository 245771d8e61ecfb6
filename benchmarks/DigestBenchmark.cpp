/// \file
/// SHA-1 digests beside OpenSSL's EVP interface, GLib, POCO and Boost. Everybody keeps its object from message to
/// message and gives the result in the form that it has at hand; the library's is the only one, GLib's apart, that is
/// already a text. Linked with the objects of the library, so that the form for processors without SHA instructions can
/// be measured as well.

#include "time/SHA1Compression.h"

#include <kelvobase/SHA1.h>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#ifdef HAVE_BOOST_SHA1
#include <boost/uuid/detail/sha1.hpp>
#endif
#ifdef HAVE_GLIB
#include <glib.h>
#endif
#ifdef HAVE_OPENSSL
#include <openssl/evp.h>
#endif
#ifdef HAVE_POCO
#include <Poco/SHA1Engine.h>
#endif

namespace
{

namespace sha1 = KelvoBase::sha1;

std::string messageOf(std::size_t size)
{
    std::string message(size, '\0');
    std::uint32_t state = 1;
    for (char& c : message) {
        state = state * 1664525 + 1013904223;
        c = static_cast<char>(state >> 24);
    }
    return message;
}

/// The digests of the messages that are measured, as the program sha1sum has them.
void prove(std::size_t size, const std::string& text)
{
    const char* expected = size == 64     ? "3cda0ed8fd1db9cf3b06a02d69fe62a9b050c2cc"
                           : size == 4096 ? "68b201420b3b3ba240fae44bd0447ca72c21cbcc"
                                          : "577552609a9cdae6a15928d8ed81e0b9a7c8c83e";
    if (text != expected) {
        throw std::logic_error("wrong digest of " + std::to_string(size) + " bytes: " + text);
    }
}

[[maybe_unused]] std::string hexadecimal(const unsigned char* bytes, std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += "0123456789abcdef"[bytes[i] >> 4];
        text += "0123456789abcdef"[bytes[i] & 0xF];
    }
    return text;
}

/// Runs `digest`, which gives something that can be looked at, and proves first that `text` of it is right.
template <typename Digest, typename Text>
void measure(benchmark::State& state, Digest digest, Text text)
{
    const std::string message = messageOf(static_cast<std::size_t>(state.range(0)));
    prove(message.size(), text(digest(message)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(digest(message));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(64)->Arg(4096)->Arg(64 << 20);
}

void digestOfLibrary(benchmark::State& state)
{
    KelvoBase::SHA1 object;
    const auto digest = [&](const std::string& message) {
        object.reset();
        object.input(message.begin(), message.end());
        return object.getResult(false);
    };
    measure(state, digest, [](const std::string& text) { return text; });
}

void digestKelvoBase(benchmark::State& state)
{
    if (!sha1::withInstructions()) {
        state.SkipWithError("this processor has no SHA instructions");
        return;
    }
    digestOfLibrary(state);
}
BENCHMARK(digestKelvoBase)->Apply(sizes);

void digestKelvoBasePortable(benchmark::State& state)
{
    const sha1::Compress before = sha1::compress;
    sha1::compress = sha1::compressPortably;
    digestOfLibrary(state);
    sha1::compress = before;
}
BENCHMARK(digestKelvoBasePortable)->Apply(sizes);

#ifdef HAVE_OPENSSL
void digestOpenSSL(benchmark::State& state)
{
    EVP_MD* algorithm = EVP_MD_fetch(nullptr, "SHA1", nullptr);
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    unsigned char bytes[EVP_MAX_MD_SIZE];
    const auto digest = [&](const std::string& message) -> const unsigned char* {
        EVP_DigestInit_ex2(context, algorithm, nullptr);
        EVP_DigestUpdate(context, message.data(), message.size());
        EVP_DigestFinal_ex(context, bytes, nullptr);
        benchmark::ClobberMemory();
        return bytes;
    };
    measure(state, digest, [](const unsigned char* all) { return hexadecimal(all, 20); });
    EVP_MD_CTX_free(context);
    EVP_MD_free(algorithm);
}
BENCHMARK(digestOpenSSL)->Apply(sizes);
#endif

#ifdef HAVE_GLIB
void digestGLib(benchmark::State& state)
{
    GChecksum* checksum = g_checksum_new(G_CHECKSUM_SHA1);
    const auto digest = [&](const std::string& message) {
        g_checksum_reset(checksum);
        g_checksum_update(checksum, reinterpret_cast<const guchar*>(message.data()),
                          static_cast<gssize>(message.size()));
        return g_checksum_get_string(checksum);
    };
    measure(state, digest, [](const char* text) { return std::string(text); });
    g_checksum_free(checksum);
}
BENCHMARK(digestGLib)->Apply(sizes);
#endif

#ifdef HAVE_POCO
void digestPoco(benchmark::State& state)
{
    Poco::SHA1Engine engine;
    const auto digest = [&](const std::string& message) -> const Poco::DigestEngine::Digest& {
        engine.update(message.data(), message.size());
        return engine.digest(); // begins a new message, too
    };
    measure(state, digest, [](const auto& bytes) { return Poco::DigestEngine::digestToHex(bytes); });
}
BENCHMARK(digestPoco)->Apply(sizes);
#endif

#ifdef HAVE_BOOST_SHA1
void digestBoost(benchmark::State& state)
{
    boost::uuids::detail::sha1 engine;
    unsigned int words[5];
    const auto digest = [&](const std::string& message) -> const unsigned int* {
        engine.reset();
        engine.process_bytes(message.data(), message.size());
        engine.get_digest(words);
        benchmark::ClobberMemory();
        return words;
    };
    const auto text = [](const unsigned int* all) {
        unsigned char bytes[20];
        for (std::size_t i = 0; i < sizeof bytes; ++i) {
            bytes[i] = static_cast<unsigned char>(all[i / 4] >> (24 - 8 * (i % 4)));
        }
        return hexadecimal(bytes, sizeof bytes);
    };
    measure(state, digest, text);
}
BENCHMARK(digestBoost)->Apply(sizes);
#endif

} // namespace

BENCHMARK_MAIN();
