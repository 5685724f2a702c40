// DES and MD5 of the product beside libcrypto's own loops.
#include "bench/cases.h"
#include "bench/check.h"

#include "crypto/quelm.h"

#define OPENSSL_SUPPRESS_DEPRECATED
#include <openssl/des.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/md5.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

namespace bench {

namespace {

constexpr size_t block = QUELM_DES_BLOCK_SIZE;

// The same bytes for both sides of a comparison.
struct Work {
    std::vector<uint8_t> input;
    std::vector<uint8_t> output;
    DES_cblock key = {1, 2, 3, 4, 5, 6, 7, 9};
    DES_cblock vector = {8, 7, 6, 5, 4, 3, 2, 1};

    explicit Work(size_t bytes) : input(bytes), output(bytes + block) {
        for (size_t i = 0; i < bytes; ++i) {
            input[i] = static_cast<uint8_t>(i * 37 + i / 251);
        }
    }

    int32_t size() const { return static_cast<int32_t>(input.size()); }
    int32_t room() const { return static_cast<int32_t>(output.size()); }
};

using Operation = void (*)(Work &work);

template <int encrypt>
void ecb(Work &work) {
    quelm_des_min_do(work.input.data(), work.size(), work.output.data(), work.room(), work.key,
                     encrypt);
}

template <int encrypt>
void bareEcb(Work &work) {
    DES_key_schedule schedule;
    DES_set_key_unchecked(&work.key, &schedule);
    for (size_t at = 0; at < work.input.size(); at += block) {
        DES_cblock in;
        DES_cblock out;
        std::memcpy(in, &work.input[at], block);
        DES_ecb_encrypt(&in, &out, &schedule, encrypt);
        std::memcpy(&work.output[at], out, block);
    }
}

template <int encrypt>
void pcbc(Work &work) {
    quelm_des_pcbc_do(work.input.data(), work.output.data(), work.size(), work.key, work.vector,
                      encrypt);
}

template <int encrypt>
void barePcbc(Work &work) {
    DES_key_schedule schedule;
    DES_set_key_unchecked(&work.key, &schedule);
    DES_pcbc_encrypt(work.input.data(), work.output.data(), work.size(), &schedule, &work.vector,
                     encrypt);
}

void md5(Work &work) {
    quelm_md5_sum(work.output.data(), work.input.data(), work.size());
}

void bareMd5(Work &work) {
    MD5(work.input.data(), work.input.size(), work.output.data());
}

void hmac(Work &work) {
    quelm_hmac_md5(work.input.data(), work.size(), work.key, block, work.output.data());
}

void bareHmac(Work &work) {
    HMAC(EVP_md5(), work.key, block, work.input.data(), work.input.size(), work.output.data(),
         nullptr);
}

struct Comparison {
    const char *row;
    const char *reference;
    Operation product;
    Operation bare;
};

constexpr std::array<Comparison, 6> comparisons = {{
    {"quelm_des_min_do, encipher", "DES_ecb_encrypt, encipher", ecb<1>, bareEcb<1>},
    {"quelm_des_min_do, decipher", "DES_ecb_encrypt, decipher", ecb<0>, bareEcb<0>},
    {"quelm_des_pcbc_do, encipher", "DES_pcbc_encrypt, encipher", pcbc<1>, barePcbc<1>},
    {"quelm_des_pcbc_do, decipher", "DES_pcbc_encrypt, decipher", pcbc<0>, barePcbc<0>},
    {"quelm_md5_sum", "MD5", md5, bareMd5},
    {"quelm_hmac_md5", "HMAC", hmac, bareHmac},
}};

std::vector<uint8_t> outputOf(Operation operation, size_t bytes) {
    Work work(bytes);
    operation(work);
    return work.output;
}

} // namespace

Column cipherColumn(size_t bytes) {
    Column column{std::to_string(bytes) + " B", bytes, {}};
    const auto work = std::make_shared<Work>(bytes);
    const auto add = [&](const char *row, const char *reference, Operation operation) {
        column.cases.push_back({row, reference, [work, operation] {
                                    operation(*work);
                                    benchmark::DoNotOptimize(work->output.data());
                                    benchmark::ClobberMemory();
                                }});
    };
    for (const Comparison &comparison : comparisons) {
        if (outputOf(comparison.product, bytes) != outputOf(comparison.bare, bytes)) {
            refuse(comparison.row, "gives other bytes than libcrypto");
        }
        add(comparison.row, comparison.reference, comparison.product);
        add(comparison.reference, comparison.reference, comparison.bare);
    }
    return column;
}

} // namespace bench
