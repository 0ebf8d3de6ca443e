// A server on loopback that speaks TLS, and passes what it hears to a service that does not. Replies name its address
// where they named the service's.
#pragma once

#include <memory>
#include <string>

namespace service::test {

class TlsRelay {
public:
    // Serves until it is destroyed, with a certificate and a key in files.
    TlsRelay(unsigned short plainPort, const std::string& certificate, const std::string& key);
    TlsRelay(const TlsRelay&) = delete;
    TlsRelay& operator=(const TlsRelay&) = delete;
    ~TlsRelay();

    std::string url() const;

private:
    class Engine;
    std::unique_ptr<Engine> engine_;
};

// Makes a certificate for that name, such as "IP:127.0.0.1", which vouches for itself, and its key.
void makeCertificate(const std::string& name, const std::string& certificate, const std::string& key);

}  // namespace service::test
