#!/usr/bin/env ruby
# frozen_string_literal: true

# Glowdeck's debug report. Collects what helps to find out why Glowdeck does not reach a bridge: the program's
# versions, the settings file and the last log lines with the bridge key replaced by "[redacted]", and whether
# the stored bridge address answers (Glowdeck checks that itself, with the bridge's certificate, and hands the
# outcome over). Writes the report to the user's cache folder, where the user can read it, and posts it to the
# error-collection endpoint when one is configured.
#
# Glowdeck runs it with no arguments after writing "debug-report-input.json" beside the report (versions, the
# settings file's path, the log, the key in use, the endpoint). Run by hand it takes an input file as its only
# argument, or reads the default settings file.
#
# Prints one line per outcome; always exits 0 unless the report itself cannot be written. The time-outs keep
# the whole run under the shell runner's 20 seconds.

require 'json'
require 'net/http'
require 'rbconfig'
require 'time'
require 'uri'

REDACTED = '[redacted]'
LOG_LINES = 200
POST_TIMEOUT = 6

def cache_folder
  case RbConfig::CONFIG['host_os']
  when /darwin/
    File.join(Dir.home, 'Library', 'Caches', 'glowdeck')
  when /mswin|mingw|cygwin/
    File.join(ENV.fetch('LOCALAPPDATA', Dir.home), 'cache', 'glowdeck')
  else
    # A relative XDG_CACHE_HOME is invalid and ignored, as the base directory rules say.
    base = ENV['XDG_CACHE_HOME'].to_s
    base = File.join(Dir.home, '.cache') unless base.start_with?('/')
    File.join(base, 'glowdeck')
  end
end

def config_folder
  base = ENV['XDG_CONFIG_HOME'].to_s
  base = File.join(Dir.home, '.config') unless base.start_with?('/')
  base
end

def read_json(path)
  JSON.parse(File.read(path, 4 * 1024 * 1024))
rescue StandardError
  nil
end

# Anything that could be a bridge key: the keys Glowdeck knows of, and whatever sits where a key sits in a
# request path ("/api/<key>/...").
def redactor(keys)
  keys = keys.map(&:to_s).reject { |key| key.strip.empty? }.uniq.sort_by { |key| -key.length }
  lambda do |text|
    text = text.to_s.dup
    keys.each { |key| text.gsub!(key, REDACTED) }
    text.gsub(%r{/api/(?!config\b)[A-Za-z0-9_\-]{8,}}, "/api/#{REDACTED}")
  end
end

# The keys stored in the settings file: the older "bridgeUser" and each bridge's "key" in "bridges".
def stored_keys(settings)
  return [] unless settings.is_a?(Hash)

  bridges = settings['bridges'].is_a?(Array) ? settings['bridges'] : []
  [settings['bridgeUser']] + bridges.map { |bridge| bridge['key'] if bridge.is_a?(Hash) }
end

# Every text in the settings, at any depth, with the keys hidden; a member that holds a key is hidden whole.
def redact_settings(value, redact, name = nil)
  case value
  when Hash
    value.to_h { |member, inner| [member, redact_settings(inner, redact, member)] }
  when Array
    value.map { |inner| redact_settings(inner, redact) }
  when String
    %w[bridgeUser key].include?(name) && !value.empty? ? REDACTED : redact.call(value)
  else
    value
  end
end

def post_report(endpoint, token, version, report)
  uri = URI(endpoint)
  body = {
    access_token: token,
    data: {
      environment: 'production',
      level: 'info',
      timestamp: Time.now.to_i,
      code_version: version,
      platform: RbConfig::CONFIG['host_os'],
      language: 'ruby',
      body: { message: { body: 'Debug report', report: report } }
    }
  }
  Net::HTTP.start(uri.host, uri.port, use_ssl: uri.scheme == 'https',
                                      open_timeout: POST_TIMEOUT, read_timeout: POST_TIMEOUT) do |http|
    request = Net::HTTP::Post.new(uri.request_uri, 'Content-Type' => 'application/json',
                                                   'X-Rollbar-Access-Token' => token.to_s)
    request.body = JSON.generate(body)
    http.request(request)
  end
end

input_path = ARGV[0] || File.join(cache_folder, 'debug-report-input.json')
input = read_json(input_path) || {}
settings_path = input['settingsFile'].to_s
settings_path = File.join(config_folder, 'glowdeck', 'settings.json') if settings_path.empty?
settings = read_json(settings_path)

keys = Array(input['keys']) + stored_keys(settings).compact
redact = redactor(keys)
address = input['bridgeAddress'].to_s
address = settings['bridgeIP'].to_s if address.empty? && settings.is_a?(Hash)
log = Array(input['log']).last(LOG_LINES).map { |line| redact.call(line) }

settings_text =
  if settings.nil?
    "(not readable: #{settings_path})"
  else
    JSON.pretty_generate(redact_settings(settings, redact))
  end

report = <<~REPORT
  Glowdeck debug report
  Created: #{Time.now.iso8601}
  Glowdeck: #{input['version'] || 'unknown'}
  Qt: #{input['qt'] || 'unknown'}
  Operating system: #{input['os'] || RbConfig::CONFIG['host_os']}
  Ruby: #{RUBY_VERSION}

  Bridge at #{address.empty? ? '(none)' : address}: #{redact.call(input['bridgeCheck'].to_s)}

  Settings (#{settings_path}):
  #{settings_text}

  Log (the last #{log.size} lines):
  #{log.join("\n")}
REPORT

report_path = input['reportFile'].to_s
report_path = File.join(cache_folder, 'debug-report.txt') if report_path.empty?
begin
  Dir.mkdir(File.dirname(report_path), 0o700) unless Dir.exist?(File.dirname(report_path))
  File.open(report_path, File::WRONLY | File::CREAT | File::TRUNC, 0o600) { |file| file.write(report) }
  File.chmod(0o600, report_path)
rescue StandardError => e
  puts "Debug report: cannot write #{report_path}: #{e.message}"
  exit 1
end
puts "Debug report written to #{report_path}"

endpoint = input['endpoint'].to_s
if endpoint.empty?
  puts 'Debug report not sent: no error-collection endpoint is configured'
else
  begin
    response = post_report(endpoint, input['accessToken'], input['version'], report)
    puts "Debug report sent to #{endpoint} (HTTP #{response.code})"
  rescue StandardError => e
    puts "Debug report not sent to #{endpoint}: #{e.class}: #{e.message}"
  end
end
