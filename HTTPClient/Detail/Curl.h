#pragma once

#include <curl/curl.h>
#include <memory>

// Owning pointers to libcurl's objects. Nothing outside this folder uses libcurl.
namespace Qx::Detail {

template <auto destroy>
struct CurlDeleter {
    template <class Handle>
    void operator()(Handle* handle) const {
        destroy(handle);
    }
};

using CurlMulti = std::unique_ptr<CURLM, CurlDeleter<curl_multi_cleanup>>;
using CurlEasy = std::unique_ptr<CURL, CurlDeleter<curl_easy_cleanup>>;
using CurlShare = std::unique_ptr<CURLSH, CurlDeleter<curl_share_cleanup>>;
using CurlUrl = std::unique_ptr<CURLU, CurlDeleter<curl_url_cleanup>>;
using CurlHeaders = std::unique_ptr<curl_slist, CurlDeleter<curl_slist_free_all>>;
using CurlText = std::unique_ptr<char, CurlDeleter<curl_free>>;

} // namespace Qx::Detail
