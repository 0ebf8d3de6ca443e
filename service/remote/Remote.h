#pragma once

#include <stdexcept>
#include <string>

namespace service::remote {

// Nobody is there, or what is there does not speak HTTP.
class NoConnection : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Reply {
    unsigned status = 0;
    std::string body;
};

// A running service, as its control is reached.
class Remote {
public:
    // Of an address such as "http://127.0.0.1:8420/kznconnect/op.do" only host and port count. Throws
    // std::invalid_argument where there is none, or it is not on this machine: the token travels in clear.
    Remote(const std::string& url, std::string token);

    Reply send(const std::string& method, const std::string& target, const std::string& body) const;

private:
    std::string address_;
    std::string host_;  // numeric
    unsigned short port_ = 0;
    std::string token_;
};

}  // namespace service::remote
