// Uses the installed library as a client library would: one section each way.
#include <protofix/protofix.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

int main() {
    auto rtsp = std::make_unique<KZDEV_RTSP_CFG>();
    rtsp->port = 554;

    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.name = "RTSP";
    info.channel = 1;
    info.input = rtsp.get();
    info.output = rtsp.get();
    info.outputLength = sizeof(KZDEV_RTSP_CFG);

    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    int len = 0;
    const std::string envelope = request.Serialize(len);
    const std::string expected =
        "{\"channel\":1,\"id\":0,\"params\":{\"table\":{\"Port\":554}},\"result\":true}\n";
    if (envelope != expected || len != static_cast<int>(expected.size())) {
        std::fprintf(stderr, "consumer: unexpected envelope %s", envelope.c_str());
        return 1;
    }
    if (request.Deserialize("{\"Port\":8554}", 0) != 1 || rtsp->port != 8554) {
        std::fprintf(stderr, "consumer: the table did not reach the record\n");
        return 1;
    }
    std::printf("consumer: the installed package converts\n");
    return 0;
}
