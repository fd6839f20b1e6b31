// SPDX-License-Identifier: Apache-2.0
#include "film/film_file.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "film/libav.h"

namespace film {
namespace {

constexpr AVRational kMilliseconds{1, 1000};

void describe(AVCodecParameters& parameters, const Ky::KyBinary& keyFrame, int width, int height) {
  parameters.codec_type = AVMEDIA_TYPE_VIDEO;
  parameters.codec_id = AV_CODEC_ID_H264;
  parameters.width = width;
  parameters.height = height;
  // The library takes the headers out of it.
  parameters.extradata =
      static_cast<std::uint8_t*>(av_mallocz(keyFrame.size() + AV_INPUT_BUFFER_PADDING_SIZE));
  if (!parameters.extradata) throw std::bad_alloc();
  parameters.extradata_size = static_cast<int>(keyFrame.size());
  std::memcpy(parameters.extradata, keyFrame.data(), keyFrame.size());
}

// The library's own errors are far beyond the system's.
int numberOf(int error) {
  constexpr int kMostOfTheSystem = 4095;
  return -error <= kMostOfTheSystem ? AVUNERROR(error) : EIO;
}

}  // namespace

WriteError::WriteError(const std::string& path, int error)
    : KyError("can't write '" + path + "': " + reasonOf(error)), fNumber(numberOf(error)) {
}

void FilmFile::Close::operator()(AVFormatContext* context) const {
  avio_closep(&context->pb);
  avformat_free_context(context);
}

FilmFile::FilmFile(std::string path, int fps) : fPath(std::move(path)), fFps(fps) {
  av_log_set_level(AV_LOG_QUIET);  // what fails is thrown
}

FilmFile::~FilmFile() {
  try {
    finish();
  } catch (const Ky::KyError&) {
    // Somebody throws already, and what there is can be played.
  }
}

void FilmFile::require(int result) const {
  if (result < 0) throw WriteError(fPath, result);
}

void FilmFile::open(const Ky::KyBinary& keyFrame, int width, int height) {
  AVFormatContext* raw = nullptr;
  require(avformat_alloc_output_context2(&raw, nullptr, "matroska", nullptr));
  std::unique_ptr<AVFormatContext, Close> context(raw);
  AVStream* stream = avformat_new_stream(raw, nullptr);
  if (!stream) throw std::bad_alloc();
  describe(*stream->codecpar, keyFrame, width, height);
  stream->time_base = kMilliseconds;
  raw->flush_packets = 1;
  stream->avg_frame_rate = {fFps, 1};
  require(avio_open(&raw->pb, ("file:" + fPath).c_str(), AVIO_FLAG_WRITE));
  AVDictionary* options = nullptr;
  av_dict_set(&options, "cluster_time_limit", "1000", 0);
  const int result = avformat_write_header(raw, &options);
  av_dict_free(&options);
  require(result);
  fContext = std::move(context);
}

void FilmFile::write(const EncodedPicture& picture, int width, int height, std::int64_t time) {
  if (!fContext) open(picture.bytes, width, height);
  const Packet packet = newPacket();
  // The library reads it during the call only.
  packet->data = const_cast<std::uint8_t*>(picture.bytes.data());
  packet->size = static_cast<int>(picture.bytes.size());
  packet->pts = packet->dts = av_rescale_q(time, kMilliseconds, fContext->streams[0]->time_base);
  if (picture.isKey) packet->flags |= AV_PKT_FLAG_KEY;
  require(av_write_frame(fContext.get(), packet.get()));
  requireWritten(*fContext);
}

void FilmFile::finish() {
  if (!fContext) return;
  const auto context = std::move(fContext);
  const int result = av_write_trailer(context.get());
  avio_flush(context->pb);
  require(result);
  requireWritten(*context);
}

void FilmFile::requireWritten(AVFormatContext& context) {
  require(context.pb->error);
  fBytes = std::max(fBytes, avio_tell(context.pb));
}

}  // namespace film
