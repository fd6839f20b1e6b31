// SPDX-License-Identifier: Apache-2.0
#include "viewer/stage/files/film_frame.h"

#include <algorithm>
#include <cstring>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/pixdesc.h>
}

#include "film/libav.h"

namespace {

constexpr int kBufferBytes = 32 * 1024;
constexpr int kMostPackets = 64;
constexpr std::int64_t kMostPixels = 64 << 20;

// A file in memory. It can't be sought in: the index at its end, which has not come, is not missed.
class Input {
 public:
  explicit Input(const QByteArray& bytes) : fBytes(bytes) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    fIo = avio_alloc_context(buffer, kBufferBytes, 0, this, &Input::read, nullptr, nullptr);
    fFormat = avformat_alloc_context();
    fFormat->pb = fIo;
    fFormat->flags |= AVFMT_FLAG_CUSTOM_IO;
    fFormat->max_streams = 8;
    // Frees the context when it fails.
    if (avformat_open_input(&fFormat, nullptr, av_find_input_format("avi"), nullptr) != 0)
      fFormat = nullptr;
  }
  ~Input() {
    avformat_close_input(&fFormat);
    av_freep(&fIo->buffer);
    avio_context_free(&fIo);
  }
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  // Null when it is no film.
  AVFormatContext* format() const { return fFormat; }

 private:
  static int read(void* self, std::uint8_t* to, int size) {
    auto& input = *static_cast<Input*>(self);
    const qsizetype count = std::min<qsizetype>(size, input.fBytes.size() - input.fRead);
    if (count <= 0) return AVERROR_EOF;
    std::memcpy(to, input.fBytes.constData() + input.fRead, static_cast<std::size_t>(count));
    input.fRead += count;
    return static_cast<int>(count);
  }

  const QByteArray fBytes;
  qsizetype fRead = 0;
  AVIOContext* fIo = nullptr;
  AVFormatContext* fFormat = nullptr;
};

const AVStream* pictureStreamOf(const AVFormatContext& format) {
  const auto* begin = format.streams;
  const auto* end = begin + format.nb_streams;
  const auto* found = std::find_if(begin, end, [](const AVStream* stream) {
    return stream->codecpar->codec_type == AVMEDIA_TYPE_VIDEO;
  });
  return found == end ? nullptr : *found;
}

// What robots write, and nothing else: every decoder more is one more to be attacked.
film::CodecContext decoderFor(const AVCodecParameters& parameters) {
  if (parameters.codec_id != AV_CODEC_ID_MPEG4 && parameters.codec_id != AV_CODEC_ID_MJPEG)
    return nullptr;
  const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
  film::CodecContext decoder(codec == nullptr ? nullptr : avcodec_alloc_context3(codec));
  if (!decoder || avcodec_parameters_to_context(decoder.get(), &parameters) < 0) return nullptr;
  decoder->thread_count = 1;
  decoder->max_pixels = kMostPixels;
  if (avcodec_open2(decoder.get(), codec, nullptr) < 0) return nullptr;
  return decoder;
}

bool decodeFirst(AVFormatContext& format, int stream, AVCodecContext& decoder, AVFrame& frame) {
  const film::Packet packet(av_packet_alloc());
  for (int i = 0; i < kMostPackets && av_read_frame(&format, packet.get()) >= 0; ++i) {
    const bool isPicture = packet->stream_index == stream;
    // The last one may not have come to its end.
    const bool isWhole = (packet->flags & AV_PKT_FLAG_CORRUPT) == 0;
    if (isPicture && isWhole) avcodec_send_packet(&decoder, packet.get());
    av_packet_unref(packet.get());
    if (avcodec_receive_frame(&decoder, &frame) == 0) return true;
  }
  avcodec_send_packet(&decoder, nullptr);
  return avcodec_receive_frame(&decoder, &frame) == 0;
}

// Of planes that have a sample for every pixel, or for every two or four of them.
bool hasPlanes(const AVPixFmtDescriptor* format) {
  return format != nullptr && format->nb_components == 3 &&
         (format->flags & (AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_BE | AV_PIX_FMT_FLAG_PAL)) == 0 &&
         (format->flags & AV_PIX_FMT_FLAG_PLANAR) != 0 && format->comp[0].depth == 8 &&
         format->log2_chroma_w <= 2 && format->log2_chroma_h <= 2;
}

// Rec. ITU-R BT.601, of the full range or of 16 to 235.
struct Colours {
  explicit Colours(bool isFull)
      : black(isFull ? 0 : 16), light(isFull ? 65536 : 76309), chroma(isFull ? 65536 : 74609) {}

  QRgb at(int y, int u, int v) const {
    const int grey = (y - black) * light;
    const auto scaled = [this](double factor) { return static_cast<int>(factor * chroma); };
    const int red = grey + scaled(1.402) * (v - 128);
    const int green = grey - scaled(0.344136) * (u - 128) - scaled(0.714136) * (v - 128);
    const int blue = grey + scaled(1.772) * (u - 128);
    const auto byte = [](int value) { return std::clamp((value + 32768) >> 16, 0, 255); };
    return qRgb(byte(red), byte(green), byte(blue));
  }

  int black;
  int light;   // of 65536
  int chroma;  // of 65536
};

QImage imageOf(const AVFrame& frame) {
  const auto* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
  if (!hasPlanes(format)) return {};
  QImage image(frame.width, frame.height, QImage::Format_RGB32);
  if (image.isNull()) return {};
  const bool isFull =
      frame.color_range == AVCOL_RANGE_JPEG || QByteArray(format->name).startsWith("yuvj");
  const Colours colours(isFull);
  for (int y = 0; y < frame.height; ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    const int chromaY = y >> format->log2_chroma_h;
    const std::uint8_t* lights = frame.data[0] + std::ptrdiff_t{y} * frame.linesize[0];
    const std::uint8_t* us = frame.data[1] + std::ptrdiff_t{chromaY} * frame.linesize[1];
    const std::uint8_t* vs = frame.data[2] + std::ptrdiff_t{chromaY} * frame.linesize[2];
    for (int x = 0; x < frame.width; ++x) {
      const int chromaX = x >> format->log2_chroma_w;
      line[x] = colours.at(lights[x], us[chromaX], vs[chromaX]);
    }
  }
  return image;
}

}  // namespace

QImage firstFrameOf(const QByteArray& film) {
  const Input input(film);
  if (input.format() == nullptr) return {};
  const AVStream* stream = pictureStreamOf(*input.format());
  const film::CodecContext decoder = stream == nullptr ? nullptr : decoderFor(*stream->codecpar);
  const film::VideoFrame frame(av_frame_alloc());
  if (!decoder || !decodeFirst(*input.format(), stream->index, *decoder, *frame)) return {};
  return imageOf(*frame);
}
