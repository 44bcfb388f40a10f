#pragma once

#include "Tests/Support/RawServer.h"

#include <chrono>
#include <string>
#include <thread>
#include <vector>

/// One thing that can go wrong on the way of an answer.
struct Fault {
    std::string name;
    RawServer::Serve answer; ///< Runs behind the request.
};

namespace Faults {

using Connection = RawServer::Connection;

inline RawServer::Serve sending(std::string bytes) {
    return [bytes = std::move(bytes)](const Connection& connection) { connection.send(bytes); };
}

inline RawServer::Serve resetBehind(std::string bytes) {
    return [bytes = std::move(bytes)](const Connection& connection) {
        connection.send(bytes);
        connection.reset();
    };
}

inline RawServer::Serve repeating(std::string first, std::string again, std::chrono::milliseconds pause) {
    return [=](const Connection& connection) {
        bool isThere = connection.send(first);
        while (isThere) {
            isThere = connection.send(again);
            std::this_thread::sleep_for(pause);
        }
    };
}

inline const std::string ok = "HTTP/1.1 200 OK\r\n";
inline const std::string chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";
inline const std::string gzip = ok + "Content-Encoding: gzip\r\n";
/// "{}" in gzip, but for the last byte.
inline const std::string gzipCutShort{"\x1F\x8B\x08\0\0\0\0\0\x02\x03\xAB\xAE\x05\0\x43\xBF\xA6\xA3\x02\0\0", 21};

/// The faults that end by themselves, or at the client's limits for the header.
inline std::vector<Fault> quick() {
    using namespace std::chrono_literals;
    return {
        {"ClosedBeforeTheAnswer", sending("")},
        {"ResetBeforeTheAnswer", resetBehind("")},
        {"ClosedInTheHeader", sending(ok + "Content-Le")},
        {"ClosedBehindTheStatusLine", sending(ok)},
        {"ResetInTheHeader", resetBehind(ok + "Content-Le")},
        {"BodyShorterThanItsLength", sending(ok + "Content-Length: 100\r\n\r\n{}")},
        {"ResetInTheBody", resetBehind(ok + "Content-Length: 100\r\n\r\n{}")},
        {"ChunkCutShort", sending(chunked + "ff\r\n{}")},
        {"NoLastChunk", sending(chunked + "2\r\n{}\r\n")},
        {"BadChunkSize", sending(chunked + "zz\r\n{}\r\n0\r\n\r\n")},
        {"EndlessHeader", repeating(ok, "X: " + std::string(1000, 'x') + "\r\n", 0ms)},
        {"EndlessHeaderLine", repeating(ok + "X: ", std::string(1000, 'x'), 0ms)},
        {"EndlessInterimAnswers", repeating("", "HTTP/1.1 100 Continue\r\n\r\n", 0ms)},
        {"NoStatusLine", sending("no status line\r\n\r\n{}")},
        {"NoStatus", sending("HTTP/1.1 yes\r\n\r\n{}")},
        {"BrokenGzip", sending(gzip + "Content-Length: 4\r\n\r\nbody")},
        {"GzipCutShort", sending(gzip + "Content-Length: 21\r\n\r\n" + gzipCutShort)},
        {"GzipCutShortInChunks",
         sending(gzip + "Transfer-Encoding: chunked\r\n\r\n15\r\n" + gzipCutShort + "\r\n0\r\n\r\n")},
        {"GzipCutShortByTheEnd", sending(gzip + "\r\n" + gzipCutShort)},
        {"GzipWithMoreBehind", sending(gzip + "\r\n" + gzipCutShort + '\0' + "more")},
        {"GzipAsTransferCoding",
         sending(ok + "Transfer-Encoding: gzip, chunked\r\n\r\n15\r\n" + gzipCutShort + "\r\n0\r\n\r\n")},
        {"EncodingThatNobodyAskedFor", sending(ok + "Content-Encoding: br\r\nContent-Length: 2\r\n\r\n{}")},
        {"TwoLengths", sending(ok + "Content-Length: 4\r\ncontent-length: 2\r\n\r\n{}{}")},
        {"LengthList", sending(ok + "Content-Length: 2, 4\r\n\r\n{}{}")},
        {"LengthBeforeABlank", sending(ok + "Content-Length : 4\r\nContent-Length: 2\r\n\r\n{}{}")},
        {"LengthOfTwoLines", sending(ok + "Content-Length: 2\r\n 4\r\n\r\n{}{}")},
        {"LengthAndChunks",
         sending(ok + "Content-Length: 2\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n")},
        {"LengthAndChunksInCapitals",
         sending(ok + "CONTENT-LENGTH: 2\r\nTRANSFER-ENCODING: CHUNKED\r\n\r\n2\r\n{}\r\n0\r\n\r\n")},
        {"LengthOf19Digits", sending(ok + "Content-Length: 0000000000000000002\r\n\r\n{}")},
        {"TwoRedirects", sending("HTTP/1.1 302 Found\r\nLocation: /good\r\nLocation: /2\r\nContent-Length: 0\r\n\r\n")},
        {"UnknownVersion", sending("HTTP/x.y 500 Internal Error\r\nContent-Length: 2\r\n\r\n{}")},
        {"OtherVersion", sending("HTTP/2 200 OK\r\nContent-Length: 2\r\n\r\n{}")},
        {"BlankBeforeTheStatus", sending("HTTP/1.1  302 Found\r\nLocation: /good\r\nContent-Length: 0\r\n\r\n")},
        {"LetterInTheStatus", sending("HTTP/1.1 200x\r\nContent-Length: 2\r\n\r\n{}")},
        {"UpgradeThatNobodyAskedFor", sending("HTTP/1.1 101 Upgrade\r\nContent-Length: 2\r\n\r\n{}")},
        {"RedirectWithinTheHeader", sending("HTTP/1.1 302 Found\r\nLocation: /good\r\n")}};
}

/// All faults; the others last until the client gives up or goes.
inline std::vector<Fault> all() {
    using namespace std::chrono_literals;
    std::vector<Fault> faults = quick();
    faults.push_back({"Silence", RawServer::stayingSilent});
    faults.push_back({"OneByteASecond", repeating(ok + "Content-Length: 100\r\n\r\n", "x", 1s)});
    return faults;
}

/// Answers "/N" with the fault of that number, and any other path well, as often as the client asks.
inline RawServer::Serve serving(std::vector<Fault> faults) {
    return [faults = std::move(faults)](const Connection& connection) {
        for (std::string request = connection.readRequest(); !request.empty(); request = connection.readRequest()) {
            const std::string path =
                request.substr(request.find('/') + 1, request.find(" HTTP") - request.find('/') - 1);
            if (path.find_first_not_of("0123456789") == std::string::npos && !path.empty()) {
                faults[std::stoul(path)].answer(connection);
                return;
            }
            connection.send(ok + "Content-Length: 2\r\n\r\n{}");
        }
    };
}

} // namespace Faults
